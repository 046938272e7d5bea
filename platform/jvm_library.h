#ifndef QUORVANE_PLATFORM_JVM_LIBRARY_H
#define QUORVANE_PLATFORM_JVM_LIBRARY_H

// Returns the file name of the JVM library on this platform if that differs from "libjvm.dylib",
// else null. The text is a constant. Any thread.
const char* platformJvmLibraryName();

#endif
