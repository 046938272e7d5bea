#ifndef QUORVANE_LAUNCHER_JVM_LAUNCH_H
#define QUORVANE_LAUNCHER_JVM_LAUNCH_H

// The Java program, run inside this process through the JNI invocation interface.

// Size of the longest class path, the terminator included, and of the block that holds it behind
// the JVM option's name.
constexpr int CLASS_PATH_SIZE = 50000;
constexpr int CLASS_PATH_OPTION_SIZE = CLASS_PATH_SIZE + sizeof "-Djava.class.path=" - 1;

// Opens the JVM library of the JRE folder `jreFolder` (full path) at the first of its three places
// that opens: lib/server, Contents/Home/lib/server, Contents/Home/jre/lib/server. Returns its
// dlopen() handle, which is never closed, or null when none opens. Logs which, or the failure.
[[nodiscard]] void* loadJVMLibrary(const char* jreFolder);

// Returns a new block of CLASS_PATH_OPTION_SIZE bytes, owned by the caller, with the JVM option
// that sets the class path to the `count` texts at `entries`; empty when `count` is below 1. An
// entry may be null, which adds nothing. Entries that do not fit are left out and logged.
char* getClassPathFor(int count, char** entries);

// Returns a new copy of `text`, owned by the caller.
char* cloneString(const char* text);

// Creates a JVM of the JRE folder `jreFolder` in this process with the given options and class
// path, calls the static main() of `mainClass` ('.' between package names) with the application
// arguments, and waits until the program's other non-daemon threads have ended. The texts are UTF-8
// (of application arguments modified UTF-8, so that characters beyond the basic plane arrive as
// others) and stay the caller's; the arrays may be null where their count is 0. A process can do
// this once.
//
// Returns 0 when main() was called, also when it threw, which the JVM prints; 1, with the reason
// logged, when the library, the JVM, the class or its main() is missing. Logs every step, and
// closes the log file before main() runs. The program may end the process itself. Any thread; it
// becomes Java's main thread.
[[nodiscard]] int launchJavaJNI(const char* mainClass, const char* jreFolder, int jvmOptionCount,
                                char** jvmOptions, int classPathCount, char** classPath,
                                int argumentCount, char** arguments);

#endif
