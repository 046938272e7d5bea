// How the work of a start grows with the number of installed runtimes.

#include <dlfcn.h>
#include <sys/stat.h>

#include "extractor/installation/interrupted_runs.h"
#include "tests/unit/extractor/runtime_folders.h"

static int lstatCalls = 0;

extern "C" int lstat(const char* path, struct stat* status) noexcept {
  static const auto real = reinterpret_cast<decltype(&lstat)>(dlsym(RTLD_NEXT, "lstat"));
  ++lstatCalls;
  return real(path, status);
}

namespace {

class ManyVersions : public RuntimeFolders {
 protected:
  // Adds runtimes until there are `count`, each with its bundle, and looks for interrupted runs.
  int callsWith(int count) {
    for (int i = installed_; i < count; ++i) {
      const std::string home = folder_ / ("Quorvane-Mac64JRE-" + std::to_string(i) + "-complete");
      std::filesystem::create_directories(home);
      std::filesystem::create_directories(home + ".plugin");
    }
    installed_ = count;
    lstatCalls = 0;
    finishInterruptedRuntimes(run_.masterFolder);
    return lstatCalls;
  }

  int installed_ = 0;
};

}  // namespace

TEST_F(ManyVersions, LookForInterruptedRunsTakesOneCallForEachRuntime) {
  EXPECT_EQ(10, callsWith(10));
  EXPECT_EQ(40, callsWith(40));
}
