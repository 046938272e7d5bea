#include "support/events/window_events.h"

#import <AppKit/AppKit.h>

#include "platform/main_thread.h"
#include "support/log/clock.h"

void handleEvents(double seconds) {
  const NSUInteger kAnyEvent = NSUIntegerMax;
  NSDate* end = seconds > 0 ? [NSDate dateWithTimeIntervalSinceNow:seconds] : [NSDate distantPast];
  NSEvent* event = nil;
  while ((event = [NSApp nextEventMatchingMask:kAnyEvent
                                     untilDate:end
                                        inMode:NSDefaultRunLoopMode
                                       dequeue:YES]) != nil) {
    [NSApp sendEvent:event];
  }
}

void answerEvents() {
  const uint64_t kIntervalMillis = 30;
  static uint64_t last = 0;
  const uint64_t now = systemTimeMillis();
  // The clock may be set back.
  if ((now >= last && now - last < kIntervalMillis) || NSApp == nil || !isMainThread()) {
    return;
  }
  last = now;
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  handleEvents(0);
  [pool release];
}

void postEmptyEvent(bool atStart) {
  [NSApp postEvent:[NSEvent otherEventWithType:NSApplicationDefined
                                      location:NSMakePoint(0, 0)
                                 modifierFlags:0
                                     timestamp:0
                                  windowNumber:0
                                       context:nil
                                       subtype:0
                                         data1:0
                                         data2:0]
           atStart:atStart ? YES : NO];
}
