#ifndef QUORVANE_TOOLS_SYSTEM_FOLDER_TREE_H
#define QUORVANE_TOOLS_SYSTEM_FOLDER_TREE_H

#include <filesystem>
#include <map>
#include <string>

namespace tools {

struct TreeItem {
  bool isFolder = false;
  std::string source;  // the file or folder on disk
};

// The items of a tree by their paths in it, '/' between names. They are in byte order, in which a
// folder comes before its contents.
using FolderTree = std::map<std::string, TreeItem>;

// Returns the contents of `folder`. A symbolic link counts as its target. Throws InputError if
// something cannot be read, is neither a file nor a folder, or if a link is broken or points to a
// folder that contains it.
FolderTree listFolder(const std::string& folder);

// Returns whether `path` is the folder `folder` or inside it, through links or not.
bool isInside(const std::filesystem::path& path, const std::string& folder);

}  // namespace tools

#endif
