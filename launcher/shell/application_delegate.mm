#include "launcher/shell/application_delegate.h"

#include "launcher/shell/java_end.h"
#include "launcher/shell/url_events.h"
#include "launcher/shell/url_handler.h"
#include "platform/window_system.h"
#include "support/events/quit_cleanup.h"
#include "support/failure/failure.h"

@implementation ApplicationDelegate

- (void)applicationWillFinishLaunching:(NSNotification*)notification {
  (void)notification;
  // The application may finish its launch twice, and AppKit may then reinstall its own handler.
  if (urlHandler == nil || !keepsEarlyEventHandlers()) {
    registerOSXEventListener();
  }
}

- (void)application:(NSApplication*)application openFiles:(NSArray*)paths {
  for (NSUInteger i = 0; i < [paths count]; ++i) {
    requestURL([[NSURL fileURLWithPath:[paths objectAtIndex:i]] absoluteString]);
  }
  [application replyToOpenOrPrint:NSApplicationDelegateReplySuccess];
}

- (NSApplicationTerminateReply)applicationShouldTerminate:(NSApplication*)application {
  (void)application;
  endIfFailing();
  runQuitCleanup();
  return endJavaInOrder() ? NSTerminateLater : NSTerminateNow;
}

@end
