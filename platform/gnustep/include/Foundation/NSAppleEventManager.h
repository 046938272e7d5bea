#ifndef QUORVANE_PLATFORM_GNUSTEP_NS_APPLE_EVENT_MANAGER_H
#define QUORVANE_PLATFORM_GNUSTEP_NS_APPLE_EVENT_MANAGER_H

// The toolkit declares NSAppleEventManager as a class without methods. These are the ones that
// launcher/shell/url_events.mm registers its handler with.
#include_next <Foundation/NSAppleEventManager.h>

#import <Foundation/NSAppleEventDescriptor.h>

@interface NSAppleEventManager (QuorvaneEvents)
// The process's manager.
+ (NSAppleEventManager*)sharedAppleEventManager;
// Registers `selector` of `handler` to be called, with the event and a reply event, for every event
// of this class and id. A later call for the same two replaces the handler. The handler is not
// retained.
- (void)setEventHandler:(id)handler
            andSelector:(SEL)selector
          forEventClass:(AEEventClass)eventClass
             andEventID:(AEEventID)eventID;
@end

#endif
