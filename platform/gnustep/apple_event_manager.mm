#include <map>
#include <utility>

#import <Foundation/Foundation.h>

#include "platform/gnustep/apple_events.h"

struct EventHandler {
  id object;
  SEL selector;
};

// Written and read on the main thread only.
static std::map<std::pair<AEEventClass, AEEventID>, EventHandler> handlers;

@implementation NSAppleEventManager (QuorvaneEvents)

+ (NSAppleEventManager*)sharedAppleEventManager {
  static NSAppleEventManager* manager = [[NSAppleEventManager alloc] init];
  return manager;
}

- (void)setEventHandler:(id)handler
            andSelector:(SEL)selector
          forEventClass:(AEEventClass)eventClass
             andEventID:(AEEventID)eventID {
  handlers[{eventClass, eventID}] = {handler, selector};
}

@end

BOOL dispatchAppleEvent(NSAppleEventDescriptor* event) {
  const auto found = handlers.find({[event eventClass], [event eventID]});
  if (found == handlers.end()) {
    return NO;
  }
  NSAppleEventDescriptor* reply = [[[NSAppleEventDescriptor alloc] init] autorelease];
  [found->second.object performSelector:found->second.selector withObject:event withObject:reply];
  return YES;
}
