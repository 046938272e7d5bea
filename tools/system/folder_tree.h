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

// The items of a tree by their paths in it, '/' between names. The order is that of the bytes, in
// which a folder comes before what it holds.
using FolderTree = std::map<std::string, TreeItem>;

// Returns what is in `folder`. A symbolic link counts as what it points to. Throws InputError when
// something cannot be read, is neither a file nor a folder, or a link points to nothing or to a
// folder that holds it.
FolderTree listFolder(const std::string& folder);

// Returns whether `path` is the folder `folder` or lies in it, through links or not.
bool isInside(const std::filesystem::path& path, const std::string& folder);

}  // namespace tools

#endif
