// Starts the application shell as on a Mac: with platform/macos/window_system.mm in place of this
// system's, and a toolkit that installs its own handler for open-URL events while the application
// finishes launching, as AppKit does. Prints the class of every handler that is registered, then
// sends an open-URL event and prints the requested URL. Ends with status 0.

#include <cstdio>

#import <AppKit/AppKit.h>
#include <objc/runtime.h>

#include "launcher/shell/application.h"
#include "launcher/shell/url_events.h"
#include "platform/gnustep/apple_events.h"
#include "platform/process_end.h"

static const AEEventClass kOpenURL = 0x4755524C;
static const AEKeyword kDirectObject = 0x2D2D2D2D;

typedef void (*SetEventHandler)(id, SEL, id, SEL, AEEventClass, AEEventID);
typedef void (*FinishLaunching)(id, SEL);

static SetEventHandler setEventHandler = NULL;
static FinishLaunching finishLaunching = NULL;

@interface ToolkitHandler : NSObject
- (void)handleURLEvent:(NSAppleEventDescriptor*)event
        withReplyEvent:(NSAppleEventDescriptor*)replyEvent;
@end

@implementation ToolkitHandler
- (void)handleURLEvent:(NSAppleEventDescriptor*)event
        withReplyEvent:(NSAppleEventDescriptor*)replyEvent {
  (void)event;
  (void)replyEvent;
}
@end

static void setEventHandlerAndPrint(id manager, SEL selector, id handler, SEL action,
                                    AEEventClass eventClass, AEEventID eventID) {
  puts(class_getName([handler class]));
  setEventHandler(manager, selector, handler, action, eventClass, eventID);
}

static void installHandlerAndFinishLaunching(id application, SEL selector) {
  [[NSAppleEventManager sharedAppleEventManager] setEventHandler:[[ToolkitHandler alloc] init]
                                                     andSelector:@selector(handleURLEvent:
                                                                           withReplyEvent:)
                                                   forEventClass:kOpenURL
                                                      andEventID:kOpenURL];
  finishLaunching(application, selector);
}

static void* replaceMethod(Class owner, SEL selector, void* replacement) {
  Method method = class_getInstanceMethod(owner, selector);
  IMP original = method_getImplementation(method);
  method_setImplementation(method, (IMP)replacement);
  return (void*)original;
}

static void actAsAppKit() {
  setEventHandler = (SetEventHandler)replaceMethod(
      [NSAppleEventManager class], @selector(setEventHandler:andSelector:forEventClass:andEventID:),
      (void*)setEventHandlerAndPrint);
  finishLaunching = (FinishLaunching)replaceMethod(
      [NSApplication class], @selector(finishLaunching), (void*)installHandlerAndFinishLaunching);
}

static void sendUrl(NSString* url) {
  NSAppleEventDescriptor* event =
      [NSAppleEventDescriptor appleEventWithEventClass:kOpenURL
                                               eventID:kOpenURL
                                      targetDescriptor:nil
                                              returnID:kAutoGenerateReturnID
                                         transactionID:kAnyTransactionID];
  [event setParamDescriptor:[NSAppleEventDescriptor descriptorWithString:url]
                 forKeyword:kDirectObject];
  dispatchAppleEvent(event);
}

int main(int, char** argv) {
  prepareApplication(argv);
  [[NSAutoreleasePool alloc] init];
  actAsAppKit();
  createApplication();
  letEventsArrive(0);
  [NSApp finishLaunching];  // as its event loop does
  sendUrl(@"quorvane://open/it");
  const char* url = getRequestedURL();
  puts(url == nullptr ? "no URL" : url);
  endProcess(0);
}
