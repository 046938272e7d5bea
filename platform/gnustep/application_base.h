#ifndef QUORVANE_PLATFORM_GNUSTEP_APPLICATION_BASE_H
#define QUORVANE_PLATFORM_GNUSTEP_APPLICATION_BASE_H

#include "platform/application_base.h"

// What the toolkit expects of an application's delegate and Cocoa does by itself.
@interface ApplicationBase (QuorvaneRequests)
// Other programs ask a running application to open a URL through distributed objects, with this
// method of its delegate. Turns the request into an Apple event for the registered handler. `url`
// is an NSURL or a text. Returns whether a handler accepted it.
- (BOOL)application:(NSApplication*)application openURL:(id)url;

// The same for a file; the toolkit passes files one by one. Passes it on as Cocoa does, with
// application:openFiles:.
- (BOOL)application:(NSApplication*)application openFile:(NSString*)path;

// Keeps the menu on the screen: the Java program's windows are not the toolkit's, which considers
// the application inactive while one of them is in front.
- (void)applicationDidResignActive:(NSNotification*)notification;
@end

#endif
