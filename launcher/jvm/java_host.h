#ifndef QUORVANE_LAUNCHER_JVM_JAVA_HOST_H
#define QUORVANE_LAUNCHER_JVM_JAVA_HOST_H

#include "launcher/jvm/host_options.h"

// What this process has to be for the Java program that it hosts. Main thread.

// The name of the program where the bundle is another's, as an installer's is. The text is copied.
// Call it before prepareHost(); "-Xdock:name=" among the options takes its place.
void setHostedName(const char* name);

// Reads the options for the host among the `count` at `options`, which have to stay as long as the
// process, and acts on them: sets the environment that Java's window toolkit reads
// (launcher/jvm/java_environment.h), and how the application presents itself
// (launcher/shell/app_shell.h). Call it while this is the only thread that looks at the
// environment: before Java's thread starts. Returns the options. Logs nothing.
HostOptions prepareHost(int count, const char* const* options);

#endif
