#ifndef QUORVANE_LAUNCHER_JVM_JAVA_HOST_H
#define QUORVANE_LAUNCHER_JVM_JAVA_HOST_H

#include "launcher/jvm/host_options.h"

// Prepares this process for the Java program that it hosts. Main thread.

// Sets the program's name if the bundle is another program's, as an installer's is. The text is
// copied. Call it before prepareHost(); "-Xdock:name=" among the options overrides it.
void setHostedName(const char* name);

// Reads the options for the host among the `count` at `options`, which must live as long as the
// process, and applies them: sets the environment that Java's window toolkit reads
// (launcher/jvm/java_environment.h), and how the application presents itself
// (launcher/shell/app_shell.h). Call it before Java's thread starts, while no other thread uses the
// environment. Returns the options. Logs nothing.
HostOptions prepareHost(int count, const char* const* options);

#endif
