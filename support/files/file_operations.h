#ifndef QUORVANE_SUPPORT_FILES_FILE_OPERATIONS_H
#define QUORVANE_SUPPORT_FILES_FILE_OPERATIONS_H

#include <cstdio>

#include "support/owned.h"

// File-system operations of an installation. Each step is logged with its path where it happens,
// unless the function says otherwise; a function without a result reports a failure only in the
// log. Tree walks skip entries whose name begins with '.' and is shorter than 3 characters.
// Deleting and setting modes never follow a symbolic link out of the tree. Not thread-safe (the
// copies share one static buffer): the installing thread only.

// Returns whether `path` can be opened for reading, as a readable folder can. Logs only success.
[[nodiscard]] bool doesFileExist(const char* path);

// Logs the call and returns true without checking.
bool doesDirExist(const char* path);

// Creates the folder `path` with mode 0777; its parents must exist. Returns 0 if it was created or
// already exists, else -1. An existing folder keeps its mode.
int makeDir(const char* path);

// Sets mode 0755 on `path` and, for a folder, on everything below it.
void chmodR755(const char* path);

// Sets mode 0777 on `path` only.
void chmod777(const char* path);

// Sets the permission bits `mode` on `path` only. Returns 0, or non-zero with nothing changed if
// that fails or `path` is a symbolic link, whose target may be anywhere. Logs nothing.
[[nodiscard]] int setModeWithoutLink(const char* path, unsigned mode);

// Opens `path` for writing, creating or truncating it; null if that fails or `path` is a symbolic
// link. Logs nothing.
[[nodiscard]] FILE* createWithoutLink(const char* path);

// As chmodR755() and chmod777() above, for an open regular file, or for an open folder without its
// contents: `path` is only for the log. A negative descriptor is only logged.
void chmodR755(int descriptor, const char* path);
void chmod777(int descriptor, const char* path);

// Deletes everything inside the folder `path`, but not the folder itself. Continues after a
// failure. Returns 1 if the folder cannot be opened, as with a symbolic link, else 0. Not atomic.
int deleteFolder(const char* path);

// Deletes the folder `path` and everything in it, including the short dot names, which are not
// logged. Does nothing if `path` is not a folder. Returns whether `path` definitely does not exist
// afterwards.
bool removeTree(const char* path);

// The same for an open folder that was at `path` when it was opened: whatever has replaced it at
// `path` meanwhile is left alone.
bool removeTree(const Descriptor& folder, const char* path);

// Copies one file's bytes, creating or truncating `to`; modes and times are not copied.
void copyFile(const char* from, const char* to);

// Copies one file's bytes to `to`, with the permission bits `mode`, through a file `to` plus
// ".part" that is renamed when complete: `to` is unchanged or complete. A link at either path is
// replaced, not followed. Returns whether `to` is the copy; a failure to open is logged. Neither
// times nor the source's mode are copied.
[[nodiscard]] bool copyFileWhole(const char* from, const char* to, unsigned mode);

// Copies the tree below `from` into the existing folder `to`, file by file; a symbolic link in
// place of a target folder or file is a failure. Returns 0, or non-zero at the first failure,
// leaving what was copied so far. Not atomic.
int copyFolder(const char* from, const char* to);

// Moves the folder `from` to `to`: renames it if the file system allows that, trying two ways for
// about three seconds, else copies it to `to` and leaves `from` in place. The caller must examine
// the folders to know which.
void doRename(const char* from, const char* to);

// The same without the copy: for what a copy, which follows links, would not be. Returns whether
// the folder was moved.
[[nodiscard]] bool renameFolder(const char* from, const char* to);

// Logs that `from` was renamed to `to`, as doRename() does.
void logRenamed(const char* from, const char* to);

// Writes into the path buffer `dst` the folder of an installed version: base, '/', "Quorvane-",
// name, '-', version and "-complete". Returns `dst`.
char* makeAppFolder(char* dst, const char* base, const char* name, const char* version);

// Writes into the path buffer `dst` a name for a temporary folder in `base`, composed of the time
// in seconds and the number of entries in `base`. The folder is not created. Returns `dst`.
char* makeAppTempFolder(char* dst, const char* base, ...);

#endif
