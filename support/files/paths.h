#ifndef QUORVANE_SUPPORT_FILES_PATHS_H
#define QUORVANE_SUPPORT_FILES_PATHS_H

#include <string>

// Building and splitting paths. The separator is '/'. Every buffer passed to pathcat() or setPath()
// has PATH_BUFFER_SIZE bytes and is owned by the caller. A path that does not fit becomes
// UNUSABLE_PATH, which is logged once where it happens: nothing can be created or opened at it or
// below it, so that a truncated path is never mistaken for a real one. Any thread.

// Size of a path buffer in bytes, the terminator included.
constexpr int PATH_BUFFER_SIZE = 5000;

// Content of a path buffer if the path did not fit.
constexpr char UNUSABLE_PATH[] = "/dev/null/path-too-long";

// Appends '/' to `dst` unless it ends in one, then `part` as it is. An empty `dst` gives '/'
// followed by `part`. Returns `dst`.
char* pathcat(char* dst, const char* part);

// Sets `dst` to the given parts joined with pathcat(). Returns `dst`.
char* setPath(char* dst, const char* a);
char* setPath(char* dst, const char* a, const char* b);
char* setPath(char* dst, const char* a, const char* b, const char* c);
char* setPath(char* dst, const char* a, const char* b, const char* c, const char* d);
char* setPath(char* dst, const char* a, const char* b, const char* c, const char* d, const char* e);

// Returns `folder` joined with `name`, or UNUSABLE_PATH if that does not fit a path buffer.
std::string childPath(const std::string& folder, const std::string& name);

// Appends `text` to `dst` directly, without a separator, within the same limit. Returns `dst`.
char* appendToPath(char* dst, const char* text);

// Converts separators to the platform's in place; they are the same here, so nothing changes.
// Returns `path`.
char* toNativePath(char* path);

// Returns whether the first character is '/'.
bool isAbsolutePath(const char* path);

// Returns `path` itself if it is absolute, else a new path buffer, owned by the caller, with the
// working folder joined with `path`. "." and ".." are not resolved. Returns UNUSABLE_PATH, which is
// logged, if the working folder has no path or one longer than 1023 bytes.
char* getAbsoluteExePath(char* path);

// Returns a new path buffer, owned by the caller, with `path` cut at its last '/'; empty if there
// is none or if the only one is the first character.
char* getAbsoluteExeDir(const char* path);

// Returns a pointer into `path`: the file name after the last '/', or `path` if there is none.
char* pathToFile(char* path);
const char* pathToFile(const char* path);

// Returns a new text, owned by the caller: `dir`, a '/' unless `dir` is empty or ends in one, then
// `name`.
char* allocTempPath(char* dir, char* name);

#endif
