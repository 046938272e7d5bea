#include "tools/system/temporary_folder.h"

#include <unistd.h>  // IWYU pragma: keep, a Mac declares mkdtemp() there

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>

#include "tools/system/input_error.h"

namespace fs = std::filesystem;

namespace tools {

TemporaryFolder::TemporaryFolder(const std::string& parent) {
  std::error_code ignored;
  fs::path folder = parent.empty() ? fs::temp_directory_path(ignored) : fs::path(parent);
  if (folder.empty()) {
    folder = "/tmp";  // TMPDIR is not a folder
  }
  path_ = (folder / "quorvane-XXXXXX").string();
  if (mkdtemp(path_.data()) == nullptr) {
    throw InputError("cannot create the temporary folder " + path_ + ": " + strerror(errno));
  }
}

TemporaryFolder::~TemporaryFolder() {
  std::error_code ignored;
  fs::remove_all(path_, ignored);
}

}  // namespace tools
