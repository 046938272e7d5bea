#ifndef QUORVANE_SUPPORT_FILES_FILE_OPERATIONS_H
#define QUORVANE_SUPPORT_FILES_FILE_OPERATIONS_H

#include <cstdio>

#include "support/owned.h"

// File-system work of an installation. A step is logged with its path where it happens, but for
// those that say otherwise; what has no result gives no hint of a failure but that line. Tree walks
// skip entries whose name begins with '.' and is shorter than 3 characters. Deleting and setting
// modes never follow a symbolic link out of the tree. Not thread-safe (the copies share one static
// buffer): the installing thread only.

// Returns whether `path` can be opened for reading, which a readable folder can. Logs only success.
[[nodiscard]] bool doesFileExist(const char* path);

// Logs the question and returns true without looking.
bool doesDirExist(const char* path);

// Creates the folder `path` with mode 0777; its parents must exist. Returns 0 when it exists
// already or was created, else -1. An existing folder keeps its mode.
int makeDir(const char* path);

// Sets mode 0755 on `path` and, for a folder, on everything below it.
void chmodR755(const char* path);

// Sets mode 0777 on `path` alone.
void chmod777(const char* path);

// Sets the permission bits `mode` on `path` alone. Returns 0, or non-zero with nothing changed when
// that fails or `path` is a symbolic link, whose target may lie anywhere. Logs nothing.
[[nodiscard]] int setModeWithoutLink(const char* path, unsigned mode);

// Opens `path` for writing, creating or truncating it; null when that fails or a symbolic link
// stands there. Logs nothing.
[[nodiscard]] FILE* createWithoutLink(const char* path);

// As chmodR755() and chmod777() above, for a plain file, or a folder alone, that is open already:
// `path` is only what the log shows. A negative descriptor is logged and nothing more.
void chmodR755(int descriptor, const char* path);
void chmod777(int descriptor, const char* path);

// Deletes everything inside the folder `path`; the folder itself stays. Goes on after a failure.
// Returns 1 when the folder cannot be opened, which a symbolic link cannot, else 0. Not atomic.
int deleteFolder(const char* path);

// Deletes the folder `path` with everything in it, the short dot names, which the log does not
// show, among it; what is no folder is left alone. Returns whether it is known that nothing stands
// at `path` afterwards.
bool removeTree(const char* path);

// The same for a folder that is open already and was at `path` when it was opened: what has taken
// its place there meanwhile is left alone.
bool removeTree(const Descriptor& folder, const char* path);

// Copies one file's bytes, creating or truncating `to`; modes and times are not copied.
void copyFile(const char* from, const char* to);

// Copies one file's bytes to `to`, with the permission bits `mode`, under the name `to` plus
// ".part" that becomes `to` when all of it is there: `to` is what stood there before, or whole. A
// link at either place is replaced, not followed. Returns whether `to` is the copy; what went wrong
// when opening is logged. Neither times nor the source's mode are copied.
[[nodiscard]] bool copyFileWhole(const char* from, const char* to, unsigned mode);

// Copies the tree below `from` into the existing folder `to`, file by file; a symbolic link in the
// place of a target folder or file is a failure. Returns 0, or non-zero at the first failure,
// leaving what was copied until then. Not atomic.
int copyFolder(const char* from, const char* to);

// Moves the folder `from` to `to`: a rename where the file system allows it, tried for about three
// seconds in two ways, else a copy into `to` that leaves `from` in place. The caller cannot tell
// which; it has to look at the folders.
void doRename(const char* from, const char* to);

// The same without the copy: for what a copy, which follows links, would not be. Returns whether
// the folder was moved.
[[nodiscard]] bool renameFolder(const char* from, const char* to);

// Logs that `from` was renamed to `to`, as doRename() does.
void logRenamed(const char* from, const char* to);

// Writes into the path buffer `dst` the folder of an installed version: base, '/', "Quorvane-",
// name, '-', version and "-complete". Returns `dst`.
char* makeAppFolder(char* dst, const char* base, const char* name, const char* version);

// Writes into the path buffer `dst` a name for a temporary folder in `base`, made of the time in
// seconds and the number of entries in `base`. The folder is not created. Returns `dst`.
char* makeAppTempFolder(char* dst, const char* base, ...);

#endif
