#include "tests/support/temp_folder.h"

#include <unistd.h>

#include <cstdlib>
#include <filesystem>

namespace fs = std::filesystem;

namespace test {

TempFolder::TempFolder() {
  fs::create_directories(QUORVANE_TEST_FILES);
  std::string pattern = std::string(QUORVANE_TEST_FILES) + "/XXXXXX";
  if (mkdtemp(pattern.data()) == nullptr) {
    abort();
  }
  path_ = pattern;
}

TempFolder::~TempFolder() {
  std::error_code ignored;
  // A test may have left folders that it made unreadable.
  for (auto it = fs::recursive_directory_iterator(
           path_, fs::directory_options::skip_permission_denied, ignored);
       it != fs::recursive_directory_iterator(); it.increment(ignored)) {
    if (it->is_directory(ignored) && !it->is_symlink(ignored)) {
      fs::permissions(it->path(), fs::perms::owner_all, fs::perm_options::add, ignored);
    }
  }
  fs::remove_all(path_, ignored);
}

}  // namespace test
