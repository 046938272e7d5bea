#ifndef QUORVANE_PLATFORM_GNUSTEP_APPLICATION_DELEGATE_H
#define QUORVANE_PLATFORM_GNUSTEP_APPLICATION_DELEGATE_H

#import <AppKit/AppKit.h>

// The application's delegate: what the toolkit asks of an application and Cocoa does by itself.
@interface ApplicationDelegate : NSObject
// Other programs ask a running application to open a URL through distributed objects, with this
// method of its delegate. Turns the request into the Apple event that a handler is registered for.
// `url` is an NSURL or a text. Returns whether a handler took it.
- (BOOL)application:(NSApplication*)application openURL:(id)url;

// Keeps the menu on the screen: the Java program's windows are not the toolkit's, which takes the
// application for inactive while one of them is in front.
- (void)applicationDidResignActive:(NSNotification*)notification;

// Ends the process with status 0, as quitting does, but without the toolkit's tear-down, which does
// not expect the JVM's threads.
- (void)applicationWillTerminate:(NSNotification*)notification;
@end

#endif
