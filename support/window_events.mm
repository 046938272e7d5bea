#include "support/window_events.h"

#import <AppKit/AppKit.h>

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
