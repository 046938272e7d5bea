#ifndef QUORVANE_PLATFORM_GNUSTEP_APPLE_EVENTS_H
#define QUORVANE_PLATFORM_GNUSTEP_APPLE_EVENTS_H

#import <Foundation/Foundation.h>

// Hands `event` to the handler that is registered for its class and id, on the calling thread.
// Returns NO when there is none.
BOOL dispatchAppleEvent(NSAppleEventDescriptor* event);

#endif
