#include "support/events/event_wait.h"

#import <AppKit/AppKit.h>

#include "platform/main_thread.h"
#include "support/events/keep_alive.h"
#include "support/events/window_events.h"

static bool hasEventQueue() { return NSApp != nil && isMainThread(); }

static void dispatchNextEvent(NSDate* limit) {
  const NSUInteger kAnyEvent = NSUIntegerMax;
  NSEvent* event = [NSApp nextEventMatchingMask:kAnyEvent
                                      untilDate:limit
                                         inMode:NSDefaultRunLoopMode
                                        dequeue:YES];
  if (event != nil) {
    [NSApp sendEvent:event];
  }
  keepAlive();
}

void waitForEvent(double seconds) {
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  NSDate* limit = [NSDate dateWithTimeIntervalSinceNow:seconds];
  if (hasEventQueue()) {
    dispatchNextEvent(limit);
  } else if (![[NSRunLoop currentRunLoop] runMode:NSDefaultRunLoopMode beforeDate:limit]) {
    [NSThread sleepForTimeInterval:seconds];
  }
  [pool release];
}

// A callback does not end the wait for an event; an event that nothing handles does.
void endEventWait() {
  if (hasEventQueue()) {
    postEmptyEvent(false);
  }
}
