#include "platform/gnustep/open_url_forwarder.h"

#include "platform/gnustep/apple_events.h"

static const AEEventClass kOpenURL = 0x4755524C;    // 'GURL', the event's class and its id
static const AEKeyword kDirectObject = 0x2D2D2D2D;  // '----'

@implementation OpenURLForwarder

- (BOOL)application:(NSApplication*)application openURL:(id)url {
  (void)application;
  NSString* text = [url isKindOfClass:[NSString class]] ? url : [url absoluteString];
  NSAppleEventDescriptor* event =
      [NSAppleEventDescriptor appleEventWithEventClass:kOpenURL
                                               eventID:kOpenURL
                                      targetDescriptor:nil
                                              returnID:kAutoGenerateReturnID
                                         transactionID:kAnyTransactionID];
  [event setParamDescriptor:[NSAppleEventDescriptor descriptorWithString:text]
                 forKeyword:kDirectObject];
  return dispatchAppleEvent(event);
}

@end
