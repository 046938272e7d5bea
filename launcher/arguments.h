#ifndef QUORVANE_LAUNCHER_ARGUMENTS_H
#define QUORVANE_LAUNCHER_ARGUMENTS_H

// The Launcher's command line, which has the form of a Java launcher's:
//
//   EXECUTABLE [JVM option | (-cp | -classpath) PATHS]... [CLASS [argument]...]
//
// The values are in globals that are written before a second thread starts and only read
// afterwards. All texts point into the argument vector, except the parts of a split class path;
// nothing is freed.

// Maximum number of JVM options, and of application arguments, that are kept.
constexpr int ARGUMENT_LIMIT = 1000;

// The main class's name, or null if the command line gives none.
extern char* clazz;

// The JVM options in command-line order; room for ARGUMENT_LIMIT.
extern char** jvmArguments;
extern int jvmArgumentsCount;

// The class path's entries and count as returned by split(); null and 0 without a class path.
extern char** classPathArray;
extern int classPathArrayCount;

// The application's arguments in command-line order; room for ARGUMENT_LIMIT.
extern char** appArguments;
extern int appArgumentsCount;

// Full path of the chosen JRE folder, a path buffer; null until it is chosen.
extern char* jreFolder;

// Fills the globals above (except jreFolder) from the `argc` arguments at `argv`, which live as
// long as the process. A class path is recognised after the main class too and never reaches the
// application. Logged and left out: JVM options and application arguments beyond ARGUMENT_LIMIT,
// and a "-cp" or "-classpath" that is the last argument. Main thread, once.
void parseArguments(int argc, char** argv);

// Splits `text` at every `separator`. If it has none the result is a new one-entry array that
// contains `text` itself, and *count is 1. Otherwise the result is a new array of pointers into one
// new copy of the text: the non-empty parts, from the last to the first, and *count is the number
// of separators, whatever the number of parts; slots without a part are null. The caller owns the
// array and the copy. Logs nothing.
char** split(char* text, char separator, int* count);

#endif
