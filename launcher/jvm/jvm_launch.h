#ifndef QUORVANE_LAUNCHER_JVM_JVM_LAUNCH_H
#define QUORVANE_LAUNCHER_JVM_JVM_LAUNCH_H

// The Java program, run inside this process through the JNI invocation interface.

// Size of the longest class path, the terminator included, and of the block that holds it behind
// the JVM option's name.
constexpr int CLASS_PATH_SIZE = 50000;
constexpr int CLASS_PATH_OPTION_SIZE = CLASS_PATH_SIZE + sizeof "-Djava.class.path=" - 1;

// Opens the JVM library of the JRE folder `jreFolder` (full path) at the first of its three places
// that opens: lib/server, Contents/Home/lib/server, Contents/Home/jre/lib/server. Returns its
// dlopen() handle, which is never closed, or null when none opens. Logs which, or the failure.
[[nodiscard]] void* loadJVMLibrary(const char* jreFolder);

// Returns whether a plain file, or a link to one, is at one of these places under the library's
// name. Logs nothing. Any thread.
[[nodiscard]] bool holdsJvmLibrary(const char* jreFolder);

// Returns a new block of CLASS_PATH_OPTION_SIZE bytes, owned by the caller, with the JVM option
// that sets the class path to the `count` texts at `entries`; empty when `count` is below 1. An
// entry may be null, which adds nothing. Entries that do not fit are left out and logged.
char* getClassPathFor(int count, char** entries);

// Returns a new copy of `text`, owned by the caller.
char* cloneString(const char* text);

// Sets what launchJavaJNI() calls where Java has run but the main thread does not come back,
// because a loop of Java's window toolkit holds it for good. The function does what the caller
// would do after a result of 0, and ends the process: it does not return. It is called on Java's
// thread. Null for waiting on. Main thread.
void setEndForHeldMainThread(void (*function)());

// Creates a JVM of the JRE folder `jreFolder` in this process with the given options and class
// path, calls the static main() of `mainClass` ('.' between package names) with the application
// arguments, and waits until the program's other non-daemon threads have ended. Options that are
// for the host (launcher/jvm/host_options.h) are left out. The texts are UTF-8 and stay the
// caller's; the arrays may be null where their count is 0. A process can do this once.
//
// Returns 0 when main() was called, also when it threw, which the JVM prints; 1, with the reason
// logged, when the library, the JVM, the class or its main() is missing. Logs every step, and
// closes the log file before main() runs. The program may end the process itself.
//
// Called on another thread than the main one it runs Java there; prepareHost() has to come first,
// on the main thread. On the main thread it does that itself, puts up the application's menu where
// there is an application object, and serves the event loop while Java runs on a thread of its own:
// Java's window toolkits wait for the main thread. With -XstartOnFirstThread Java runs on the main
// thread, without menu and loop: such programs bring their own.
[[nodiscard]] int launchJavaJNI(const char* mainClass, const char* jreFolder, int jvmOptionCount,
                                char** jvmOptions, int classPathCount, char** classPath,
                                int argumentCount, char** arguments);

#endif
