#ifndef QUORVANE_SUPPORT_FILES_FOLDER_WALK_H
#define QUORVANE_SUPPORT_FILES_FOLDER_WALK_H

#include <dirent.h>

#include <memory>
#include <string>
#include <vector>

#include "support/owned.h"

// Shared by the routines that walk a folder tree.

struct CloseFolder {
  void operator()(DIR* folder) const { closedir(folder); }
};

// An open folder that closes itself.
using Folder = std::unique_ptr<DIR, CloseFolder>;

// Opens `path`, following links; null if it is not a readable folder. Logs nothing.
Folder openFolder(const char* path);

// Opens `path` as openFolder() does, but returns null if `path` itself is a symbolic link: a walk
// stays inside the tree that it was given.
Folder openFolderWithoutLink(const char* path);

// The same as a descriptor, which is not open if `path` itself is a symbolic link or not a readable
// folder. Only the last component of the path is checked; a home may be reached through a link.
[[nodiscard]] Descriptor openFolderItself(const char* path);

// The same for the entry `name` of the open folder `parent`.
[[nodiscard]] Descriptor openFolderIn(const Descriptor& parent, const char* name);

// Returns another descriptor of the same open folder, not open if that fails.
[[nodiscard]] Descriptor secondDescriptorOf(const Descriptor& folder);

// Opens the open folder `folder` for listing from its first entry; null if that fails. `folder`
// stays open.
[[nodiscard]] Folder openListing(const Descriptor& folder);

// Returns the names in `folder`, in listing order and without "." and "..", and closes it: a walk
// that gathers the names first holds no folder open while it is further down, whatever the depth of
// the tree. A null folder has no names.
std::vector<std::string> allNames(Folder folder);

// Writes the same names to `*names`; returns false if the folder could not be listed completely.
[[nodiscard]] bool listNames(Folder folder, std::vector<std::string>* names);

// As allNames(), for the walks of an installation: omits names that begin with '.' and are shorter
// than 3 characters, including two-character dot names.
std::vector<std::string> namesToWalk(Folder folder);

// Whether `name` begins with '.' and is shorter than 3 characters.
[[nodiscard]] bool isShortDotName(const std::string& name);

// Returns the number of entries that readdir() lists, including "." and ".."; 0 if `path` cannot be
// opened.
long countEntries(const char* path);

#endif
