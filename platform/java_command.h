#ifndef QUORVANE_PLATFORM_JAVA_COMMAND_H
#define QUORVANE_PLATFORM_JAVA_COMMAND_H

// Returns whether the command "java" of this platform takes the options that are meant for a JVM's
// host (launcher/jvm/host_options.h); elsewhere it refuses to start with one of them. Any thread.
[[nodiscard]] bool takesJavaCommandHostOptions();

#endif
