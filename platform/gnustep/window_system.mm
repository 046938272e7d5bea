#include "platform/window_system.h"

#import <AppKit/AppKit.h>

#include "platform/display.h"
#import "platform/gnustep/create_application.h"
#include "platform/toolkit.h"

bool openWindowSystem() {
  if (NSApp != nil) {
    return true;
  }
  if (!isDisplayAvailable()) {
    return false;
  }
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  beforeApplicationCreation();
  const bool created = createSharedApplication();
  afterApplicationCreation();
  [pool release];
  return created;
}

void answerWindowSystem() {
  NSDate* noWait = [NSDate distantPast];
  NSEvent* event = nil;
  do {
    event = [NSApp nextEventMatchingMask:NSAnyEventMask
                               untilDate:noWait
                                  inMode:NSDefaultRunLoopMode
                                 dequeue:YES];
    if (event != nil) {
      [NSApp sendEvent:event];
    }
  } while (event != nil);
}
