#ifndef QUORVANE_SUPPORT_FOLDER_WALK_H
#define QUORVANE_SUPPORT_FOLDER_WALK_H

#include <dirent.h>

#include <memory>

// Shared by the routines that walk a folder tree.

struct CloseFolder {
  void operator()(DIR* folder) const { closedir(folder); }
};

// An open folder that closes itself.
using Folder = std::unique_ptr<DIR, CloseFolder>;

// Opens `path`, following links; null when it is no readable folder. Logs nothing.
Folder openFolder(const char* path);

// Opens `path` as openFolder() does, but gives null when `path` itself is a symbolic link: a walk
// stays inside the tree that it was given.
Folder openFolderWithoutLink(const char* path);

// Returns the next entry that a walk handles, or null at the end. Skips names that begin with '.'
// and are shorter than 3 characters: ".", ".." and two-character dot names.
const dirent* nextEntry(DIR* folder);

// Returns the number of entries that readdir() lists, "." and ".." included; 0 when `path` cannot
// be opened.
long countEntries(const char* path);

#endif
