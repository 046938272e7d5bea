#include "tools/system/folder_tree.h"

#include <algorithm>
#include <filesystem>
#include <vector>

#include "tools/system/input_error.h"

namespace fs = std::filesystem;

namespace tools {

// Walks a tree; `ancestors_` are the real paths of the folders that it is in.
class Walk {
 public:
  explicit Walk(FolderTree* tree) : tree_(tree) {}

  void enter(const fs::path& folder, const std::string& prefix) {
    const fs::path real = fs::canonical(folder);
    if (std::find(ancestors_.begin(), ancestors_.end(), real) != ancestors_.end()) {
      throw InputError(folder.string() + " is a link to a folder that contains it; remove it");
    }
    ancestors_.push_back(real);
    for (const auto& entry : fs::directory_iterator(folder)) {
      add(entry.path(), prefix + entry.path().filename().string());
    }
    ancestors_.pop_back();
  }

 private:
  void add(const fs::path& source, const std::string& path) {
    switch (fs::status(source).type()) {
      case fs::file_type::directory:
        (*tree_)[path] = {true, source.string()};
        enter(source, path + "/");
        return;
      case fs::file_type::regular:
        (*tree_)[path] = {false, source.string()};
        return;
      case fs::file_type::not_found:
        throw InputError(source.string() + " is a broken link; remove it");
      default:
        throw InputError(source.string() + " is neither a file nor a folder; remove it");
    }
  }

  FolderTree* tree_;
  std::vector<fs::path> ancestors_;
};

bool isInside(const fs::path& path, const std::string& folder) {
  const fs::path real = fs::weakly_canonical(fs::absolute(path));
  const fs::path realFolder = fs::weakly_canonical(fs::absolute(folder));
  const auto end = std::mismatch(realFolder.begin(), realFolder.end(), real.begin(), real.end());
  return end.first == realFolder.end();
}

FolderTree listFolder(const std::string& folder) {
  FolderTree tree;
  try {
    if (!fs::is_directory(folder)) {
      throw InputError(folder + " is not a folder");
    }
    Walk(&tree).enter(folder, "");
  } catch (const fs::filesystem_error& error) {
    throw InputError(error.path1().string() + " cannot be read: " + error.code().message());
  }
  return tree;
}

}  // namespace tools
