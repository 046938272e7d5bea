#ifndef QUORVANE_LAUNCHER_JVM_JVM_LAUNCH_H
#define QUORVANE_LAUNCHER_JVM_JVM_LAUNCH_H

// The Java program, run inside this process through the JNI invocation interface.

// Size of the longest class path, including the terminator, and of the block that contains it after
// the JVM option's name.
constexpr int CLASS_PATH_SIZE = 50000;
constexpr int CLASS_PATH_OPTION_SIZE = CLASS_PATH_SIZE + sizeof "-Djava.class.path=" - 1;

// Opens the JVM library of the JRE folder `jreFolder` (full path) at the first of its three places
// that works: lib/server, Contents/Home/lib/server, Contents/Home/jre/lib/server. Returns its
// dlopen() handle, which is never closed, or null if none opens. Logs which, or the failure.
[[nodiscard]] void* loadJVMLibrary(const char* jreFolder);

// Returns whether a regular file with the library's name, or a link to one, is at one of these
// places. Logs nothing. Any thread.
[[nodiscard]] bool holdsJvmLibrary(const char* jreFolder);

// Returns a new block of CLASS_PATH_OPTION_SIZE bytes, owned by the caller, with the JVM option
// that sets the class path to the `count` texts at `entries`; empty if `count` is below 1. A null
// entry adds nothing. Entries that do not fit are left out and logged.
char* getClassPathFor(int count, char** entries);

// Returns a new copy of `text`, owned by the caller.
char* cloneString(const char* text);

// Sets a function that launchJavaJNI() calls if Java has finished but the main thread does not
// return, because a loop of Java's window toolkit holds it forever. The function does what the
// caller would do after a result of 0, and ends the process: it does not return. It is called on
// Java's thread. Null to keep waiting. Main thread.
void setEndForHeldMainThread(void (*function)());

// Creates a JVM of the JRE folder `jreFolder` in this process with the given options and class
// path, calls the static main() of `mainClass` ('.' between package names) with the application
// arguments, and waits until the program's other non-daemon threads have ended. Options for the
// host (launcher/jvm/host_options.h) are left out. The texts are UTF-8 and stay the caller's; an
// array may be null if its count is 0. A process can do this only once.
//
// Returns 0 if main() was called, even if it threw an exception, which the JVM prints; 1, with the
// reason logged, if the library, the JVM, the class or its main() is missing. Logs every step, and
// closes the log file before main() runs. The program may end the process itself.
//
// On another thread than the main one it runs Java on that thread; prepareHost() must be called
// first, on the main thread. On the main thread it does that itself, creates the application's menu
// if there is an application object, and runs the event loop while Java runs on a separate thread,
// because Java's window toolkits wait for the main thread. With -XstartOnFirstThread Java runs on
// the main thread, without menu and event loop: such programs bring their own.
[[nodiscard]] int launchJavaJNI(const char* mainClass, const char* jreFolder, int jvmOptionCount,
                                char** jvmOptions, int classPathCount, char** classPath,
                                int argumentCount, char** arguments);

#endif
