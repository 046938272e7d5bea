#ifndef QUORVANE_ARCHIVE_DESTINATION_H
#define QUORVANE_ARCHIVE_DESTINATION_H

#include "support/owned.h"

// Reaching an entry's place below the destination folder. Every folder on the way is opened
// relative to the one before it and never through a symbolic link, so that a link that stands
// there, or is put there meanwhile, leads nowhere: the entry is refused and the process ends with
// status 1. `path` is an entry's path that has passed faultOfEntryPath().

// Opens the folder that holds the entry `path`, creating the folders on the way with mode 0777 (a
// logged line each). The result is not open when the folder cannot be reached.
[[nodiscard]] Descriptor openEntryFolder(const char* destDir, const char* path);

// Creates the entry `path` itself as a folder with mode 0777 in `parent` unless it is there.
// `target` is its whole path. Returns whether it is there.
[[nodiscard]] bool createFolder(const Descriptor& parent, const char* path, const char* target);

// Creates the empty file `name` in `parent` for writing, replacing what has this name unless it is
// a folder. `path` is named when a symbolic link is refused. The result is not open on failure.
[[nodiscard]] Descriptor createFile(const Descriptor& parent, const char* name, const char* path);

// Removes the file `name` from `parent` if it is there and is no folder.
void removeFile(const Descriptor& parent, const char* name);

// Refuses the entry `path` when `name` in `parent` is a symbolic link.
void refuseLink(const Descriptor& parent, const char* name, const char* path);

#endif
