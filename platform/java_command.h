#ifndef QUORVANE_PLATFORM_JAVA_COMMAND_H
#define QUORVANE_PLATFORM_JAVA_COMMAND_H

// Returns whether this platform's command "java" accepts the options for a JVM's host
// (launcher/jvm/host_options.h); elsewhere it refuses to start with one of them. Any thread.
[[nodiscard]] bool takesJavaCommandHostOptions();

#endif
