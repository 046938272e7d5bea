#include "tests/support/own_root.h"

#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>

namespace fs = std::filesystem;

namespace test {

static bool separateMounts() {
  return unshare(CLONE_NEWNS) == 0 &&
         mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
}

bool mayMount() {
  const pid_t child = fork();
  if (child == 0) {
    _exit(separateMounts() ? 0 : 1);
  }
  int status = 0;
  return waitpid(child, &status, 0) == child && status == 0;
}

// A preparation that fails must not let the program run in the wrong place.
static void require(bool done) {
  if (!done) {
    _exit(125);
  }
}

static void showAt(const std::string& target, const std::string& source) {
  mkdir(target.c_str(), 0755);
  require(mount(source.c_str(), target.c_str(), nullptr, MS_BIND | MS_REC, nullptr) == 0);
}

static bool isReplaced(const std::string& name, const std::vector<RootFolder>& folders) {
  return std::any_of(folders.begin(), folders.end(),
                     [&name](const RootFolder& folder) { return folder.name == name; });
}

void enterOwnRoot(const std::string& root, const std::vector<RootFolder>& folders) {
  require(separateMounts());
  require(mount("none", root.c_str(), "tmpfs", 0, "mode=755") == 0);
  for (const auto& entry : fs::directory_iterator("/")) {
    const std::string name = entry.path().filename();
    const std::string target = root + "/" + name;
    if (isReplaced(name, folders)) {
      continue;
    }
    if (entry.is_symlink()) {
      fs::copy_symlink(entry.path(), target);
    } else if (entry.is_directory()) {
      showAt(target, entry.path());
    }
  }
  for (const RootFolder& folder : folders) {
    showAt(root + "/" + folder.name, folder.source);
  }
  require(chroot(root.c_str()) == 0 && chdir("/") == 0);
}

void mountSmallDisk(const std::string& folder, const std::string& size) {
  require(separateMounts());
  require(mount("none", folder.c_str(), "tmpfs", 0, ("mode=777,size=" + size).c_str()) == 0);
}

}  // namespace test
