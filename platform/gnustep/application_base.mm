#include "platform/gnustep/application_base.h"

#include "platform/gnustep/apple_events.h"

static const AEEventClass kOpenURL = 0x4755524C;    // 'GURL', the event's class and its id
static const AEKeyword kDirectObject = 0x2D2D2D2D;  // '----'

@protocol OpensFiles
- (void)application:(NSApplication*)application openFiles:(NSArray*)paths;
@end

@implementation ApplicationBase
@end

@implementation ApplicationBase (QuorvaneRequests)

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

- (BOOL)application:(NSApplication*)application openFile:(NSString*)path {
  if (path == nil) {
    return NO;
  }
  [(id<OpensFiles>)self application:application openFiles:[NSArray arrayWithObject:path]];
  return YES;
}

- (void)applicationDidResignActive:(NSNotification*)notification {
  (void)notification;
  [[NSApp mainMenu] display];
}

@end
