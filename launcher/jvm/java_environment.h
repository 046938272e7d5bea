#ifndef QUORVANE_LAUNCHER_JVM_JAVA_ENVIRONMENT_H
#define QUORVANE_LAUNCHER_JVM_JAVA_ENVIRONMENT_H

#include "launcher/jvm/host_options.h"

// Sets the environment variables from which Java's window toolkit on macOS learns what the command
// "java" would otherwise tell it. PID is this process's id, so that children do not take the
// variables for their own:
//
//   APP_NAME_PID                        `name`, unless it is null
//   APP_ICON_PID                        -Xdock:icon=
//   JAVA_STARTED_ON_FIRST_THREAD_PID    1, with -XstartOnFirstThread
//   AWT_OVERRIDE_NSDELEGATE             1, unless it is set already
//
// Without the last, the toolkit leaves a foreign application object alone, and neither Quit nor
// open-URL events reach Java.
//
// JAVA_MAIN_CLASS_PID, which "java" also sets, is omitted: the toolkit would prefer the main
// class's name to the bundle's. Main thread, before the JVM's thread exists, because the JVM reads
// the environment. Logs nothing.
void setJavaEnvironment(const HostOptions& options, const char* name);

#endif
