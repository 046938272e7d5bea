#include "tests/support/account.h"

#include <grp.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

namespace fs = std::filesystem;

namespace test {

static const uid_t kNobody = 65534;

Account ordinaryAccount() {
  if (geteuid() != 0) {
    return {geteuid(), getegid()};
  }
  return {kNobody, kNobody};
}

void become(const Account& account) {
  if (geteuid() == account.user) {
    return;
  }
  if (setgroups(0, nullptr) != 0 || setgid(account.group) != 0 || setuid(account.user) != 0) {
    _exit(125);
  }
}

static void giveOne(const Account& account, const std::string& path) {
  EXPECT_EQ(0, lchown(path.c_str(), account.user, account.group)) << path;
}

void giveTo(const Account& account, const std::string& path) {
  giveOne(account, path);
  for (const auto& entry : fs::recursive_directory_iterator(path)) {
    giveOne(account, entry.path());
  }
}

bool canReach(const Account& account, const std::string& path) {
  if (geteuid() == account.user) {
    return true;
  }
  for (fs::path folder = fs::path(path).parent_path(); folder != folder.root_path();
       folder = folder.parent_path()) {
    struct stat status {};
    if (stat(folder.c_str(), &status) != 0 || (status.st_mode & S_IXOTH) == 0) {
      return false;
    }
  }
  return true;
}

}  // namespace test
