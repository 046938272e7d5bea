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
// are removed. Every step is logged first, as the shell command that would do the same, and is
// tried whatever the previous one gave; no failure is reported. Not atomic, so that an installation
// uses the two functions below.
void initOSXJRE(const char* bundlePath);

// The same steps on the temporary folders of a runtime that is going to be `bundlePath`: `bundle`,
// and the folder `home`, which the entries move into. The links name their places beside
// `bundlePath`. Logs nothing. Returns whether the steps worked: nothing visible is left of the
// bundle's own Java home, and its links are there.
[[nodiscard]] bool layOutAside(const char* bundle, const char* home, const char* bundlePath);

// How a runtime came to be laid out, as its log lines say it.
struct LayoutOrigin {
  bool isNew;        // no plain folder was there before
  bool isPlainHome;  // it came as a Java home without Contents/Home
};

// Logs the steps for the installed runtime `bundlePath` as initOSXJRE() does, and does none of them
// again, but for the mode of a plain folder that is new.
void logLayout(const char* bundlePath, const LayoutOrigin& origin);

// Returns the places in a bundle that are the layout's own: the link to the plain folder and that
// to its plug-in library.
std::vector<std::string> placesOfLayout();

// Returns whether the Java home `home` holds a Java executable. Any thread.
[[nodiscard]] bool holdsJava(const char* home);

// Returns a new path buffer, owned by the caller, with the path of the bundle's "java" tool, after
// setting its mode to 0777. Where that fails an error is logged and the path returned all the same.
char* getJavaExecutable(const char* bundlePath);

// The same for "unpack200"; the search is traced on standard output.
char* getUnpack200Executable(const char* bundlePath);

#endif
