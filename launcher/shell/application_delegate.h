#ifndef QUORVANE_LAUNCHER_SHELL_APPLICATION_DELEGATE_H
#define QUORVANE_LAUNCHER_SHELL_APPLICATION_DELEGATE_H

#include "platform/application_base.h"

// The application's delegate, in every executable with windows. If Java's window toolkit replaces
// it with its own delegate, that one decides how the application quits. Included by Objective-C++
// files only; main thread.
@interface ApplicationDelegate : ApplicationBase

// Registers for open-URL events, if not already done: the toolkit has installed its own handlers by
// now and no longer removes this one.
- (void)applicationWillFinishLaunching:(NSNotification*)notification;

// A file that the application is asked to open arrives as a "file:" URL; of several the last one
// remains the requested one.
- (void)application:(NSApplication*)application openFiles:(NSArray*)paths;

// Every quit passes through here: from the menu, the Dock, the quit Apple event, or log-out. With a
// Java program in the process, its shutdown hooks run first, and the process ends after them
// (launcher/shell/java_end.h).
- (NSApplicationTerminateReply)applicationShouldTerminate:(NSApplication*)application;
@end

#endif
