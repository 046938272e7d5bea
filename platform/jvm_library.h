#ifndef QUORVANE_PLATFORM_JVM_LIBRARY_H
#define QUORVANE_PLATFORM_JVM_LIBRARY_H

// Returns the file name that the JVM library has on this platform where that differs from
// "libjvm.dylib", or null where it does not. The text is a constant. Any thread.
const char* platformJvmLibraryName();

#endif
