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
// are removed. A bundle path that holds a plain Java home, without Contents/Home, gives the same
// pair. Every step is logged with the shell command that would do the same and is tried whatever
// the previous one gave; no failure is reported. Not atomic.
void initOSXJRE(const char* bundlePath);

// Removes what is hidden in `folder` and is no folder, as rm .* does. A link is removed itself; a
// file that cannot be removed stays without a word.
void removeHiddenFiles(const char* folder);

// Returns the places in a bundle at which a link is the layout's own.
std::vector<std::string> linksOfLayout();

// Returns whether the bundle at `bundlePath`, once initOSXJRE() has run, is known to lack the link
// that makes the plug-in library its executable.
[[nodiscard]] bool lacksExecutableLink(const char* bundlePath);

// Makes that link, logged as in initOSXJRE().
void linkExecutable(const char* bundlePath);

// Returns a new path buffer, owned by the caller, with the path of the bundle's "java" tool, after
// setting its mode to 0777. Where that fails an error is logged and the path returned all the same.
char* getJavaExecutable(const char* bundlePath);

// The same for "unpack200"; the search is traced on standard output.
char* getUnpack200Executable(const char* bundlePath);

#endif
