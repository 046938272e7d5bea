#ifndef QUORVANE_EXTRACTOR_RUNTIME_JRE_LAYOUT_H
#define QUORVANE_EXTRACTOR_RUNTIME_JRE_LAYOUT_H

#include <string>
#include <vector>

// The two views of one Java runtime in a master folder: the plain folder, which holds the runtime
// itself, and beside it the bundle of the same name plus ".plugin", whose Contents/Home is a link
// to the plain folder. One thread.

// Returns the plain folder's path, or its name, for that of a bundle. Any thread.
std::string plainFolderOf(const std::string& bundlePath);

// Turns the unpacked bundle at `bundlePath`, which ends in ".plugin", into that pair. The visible
// entries of its Java home and its hidden folders move into the plain folder; hidden files there
// are removed. Every step is logged first, as the equivalent shell command, and runs even if the
// previous one failed; no failure is reported. Not atomic: installations use layOutAside() and
// logLayout().
void initOSXJRE(const char* bundlePath);

// Does the same steps on temporary folders: `bundle`, which will become `bundlePath`, and `home`,
// which receives the entries. The links name the final places. Logs nothing. Returns whether the
// steps worked: nothing visible is left in the bundle's own Java home, and its links exist.
[[nodiscard]] bool layOutAside(const char* bundle, const char* home, const char* bundlePath);

// What the log lines of a layout depend on.
struct LayoutOrigin {
  bool isNew;        // no plain folder was there before
  bool isPlainHome;  // it came as a Java home without Contents/Home
};

// Logs the steps for the installed runtime `bundlePath` as initOSXJRE() does, without repeating
// them, except for setting the mode of a new plain folder.
void logLayout(const char* bundlePath, const LayoutOrigin& origin);

// Returns the paths in a bundle of the links that the layout makes: to the plain folder and to its
// plug-in library.
std::vector<std::string> placesOfLayout();

// Returns whether the Java home `home` contains a Java executable. Any thread.
[[nodiscard]] bool holdsJava(const char* home);

// Returns a new path buffer, owned by the caller, with the path of the bundle's "java" tool, after
// setting its mode to 0777. If that fails, logs an error and still returns the path.
char* getJavaExecutable(const char* bundlePath);

// The same for "unpack200"; the search is traced on standard output.
char* getUnpack200Executable(const char* bundlePath);

#endif
