#ifndef QUORVANE_ARCHIVE_DESTINATION_H
#define QUORVANE_ARCHIVE_DESTINATION_H

#include "support/owned.h"

// Opens an entry's place below the destination folder. The destination is opened once for a whole
// archive, and every folder on the way relative to its parent, never through a symbolic link: a
// link that exists or is planted meanwhile has no effect. The entry is then refused and the process
// ends with status 1. `path` is an entry's path that has passed entryPathError().

struct Destination {
  const char* path;   // for the log, and for the tools, which are given paths
  Descriptor folder;  // not open when there is no folder at the path itself
};

// Opens the destination folder. Links higher up in its path are followed, because a home may be on
// another volume.
[[nodiscard]] Destination openDestination(const char* path);

// Opens the folder that contains the entry `path`, creating the folders on the way with mode 0777
// (a logged line each). The result is not open if the folder cannot be reached.
[[nodiscard]] Descriptor openEntryFolder(const Destination& destination, const char* path);

// Creates the entry `path` itself as a folder with mode 0777 in `parent` unless it exists; an empty
// path is the destination itself. `target` is its full path. Returns whether it exists.
[[nodiscard]] bool createFolder(Destination* destination, const Descriptor& parent,
                                const char* path, const char* target);

// Creates the empty file `name` in `parent` for writing, replacing an existing entry of this name
// unless it is a folder. `path` is logged if a symbolic link is refused. The result is not open on
// failure.
[[nodiscard]] Descriptor createFile(const Descriptor& parent, const char* name, const char* path);

// Removes the file `name` from `parent` if it exists and is not a folder.
void removeFile(const Descriptor& parent, const char* name);

// Refuses the entry `path` if `name` in `parent` is a symbolic link.
void refuseLink(const Descriptor& parent, const char* name, const char* path);

// Whether `parent` has an entry `name` that is not a symbolic link.
[[nodiscard]] bool holds(const Descriptor& parent, const char* name);

// Refuses the entry `path` unless `parent` is the folder that contains `target`: a tool given the
// path `target` would write elsewhere.
void refuseMovedFolder(const Descriptor& parent, const char* target, const char* path);

#endif
