#ifndef QUORVANE_LAUNCHER_JVM_JVM_PLACES_H
#define QUORVANE_LAUNCHER_JVM_JVM_PLACES_H

// The places of a Java home in a runtime folder: the folder itself, its Contents/Home and its
// Contents/Home/jre. The JVM library is in lib/server of the home. Any thread.

constexpr int JAVA_HOME_PLACES = 3;

// The library's file name; a platform may have an additional one (platform/jvm_library.h).
constexpr char JVM_LIBRARY_NAME[] = "libjvm.dylib";

// Writes place number `place` of `jreFolder` into the path buffer `path` and returns that.
char* setJavaHome(char* path, const char* jreFolder, int place);

#endif
