#include "platform/gnustep/application_delegate.h"

#include "platform/gnustep/apple_events.h"
#include "platform/process_end.h"

static const AEEventClass kOpenURL = 0x4755524C;    // 'GURL', the event's class and its id
static const AEKeyword kDirectObject = 0x2D2D2D2D;  // '----'

@implementation ApplicationDelegate

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

- (void)applicationDidResignActive:(NSNotification*)notification {
  (void)notification;
  [[NSApp mainMenu] display];
}

- (void)applicationWillTerminate:(NSNotification*)notification {
  (void)notification;
  endProcess(0);
}

@end
