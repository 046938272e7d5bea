#ifndef QUORVANE_LAUNCHER_SHELL_APPLICATION_DELEGATE_H
#define QUORVANE_LAUNCHER_SHELL_APPLICATION_DELEGATE_H

#include "platform/application_base.h"

// The application's delegate, in every executable with windows. Where Java's window toolkit puts
// one of its own in this place, that one decides how the application quits. Included by
// Objective-C++ files only; main thread.
@interface ApplicationDelegate : ApplicationBase

// Registers for open-URL events, unless that has been done: the toolkit has installed its own
// handlers by now and does not take this one away any more.
- (void)applicationWillFinishLaunching:(NSNotification*)notification;

// A file that the application is to open arrives as its "file:" URL does; of several the last one
// stays the requested one.
- (void)application:(NSApplication*)application openFiles:(NSArray*)paths;

// Every quit comes through here: the menu's, the Dock's, that of the quit Apple event, log-out.
// With a Java program in the process, its shutdown hooks run first, and the process ends after them
// (launcher/shell/java_end.h).
- (NSApplicationTerminateReply)applicationShouldTerminate:(NSApplication*)application;
@end

#endif
