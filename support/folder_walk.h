#ifndef QUORVANE_SUPPORT_FOLDER_WALK_H
#define QUORVANE_SUPPORT_FOLDER_WALK_H

#include <dirent.h>

#include <memory>
#include <string>
#include <vector>

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

// Returns the names in `folder`, in the order of the listing and without "." and "..", and closes
// it: a walk that gathers the names first holds no folder open while it is further down, however
// deep the tree. A null folder has no names.
std::vector<std::string> allNames(Folder folder);

// The same, as the walks of an installation want it: names that begin with '.' and are shorter than
// 3 characters are left out, two-character dot names with them.
std::vector<std::string> namesToWalk(Folder folder);

// Returns `folder` joined with `name`, or UNUSABLE_PATH when that does not fit a path buffer.
std::string childPath(const std::string& folder, const std::string& name);

// Returns the number of entries that readdir() lists, "." and ".." included; 0 when `path` cannot
// be opened.
long countEntries(const char* path);

#endif
