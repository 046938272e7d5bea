#ifndef QUORVANE_LAUNCHER_JVM_JAVA_THREAD_H
#define QUORVANE_LAUNCHER_JVM_JAVA_THREAD_H

#include <pthread.h>

#include <cstddef>

// Starts a thread that runs body(argument), with `stackSize` bytes of stack, rounded up to whole
// pages. The system's default is too small for Java's main thread: on macOS it is 512 KB, and no
// -Xss could change it. If the system refuses a stack of that size the thread gets the default one,
// and the JVM reports what it lacks. Returns false, with nothing logged, if no thread could be
// started.
[[nodiscard]] bool startJavaThread(pthread_t* thread, size_t stackSize, void* (*body)(void*),
                                   void* argument);

#endif
