#ifndef QUORVANE_PLATFORM_GNUSTEP_APPLE_EVENTS_H
#define QUORVANE_PLATFORM_GNUSTEP_APPLE_EVENTS_H

#import <Foundation/Foundation.h>

// Passes `event` to the handler registered for its class and id, on the calling thread. Returns NO
// if there is none.
BOOL dispatchAppleEvent(NSAppleEventDescriptor* event);

#endif
