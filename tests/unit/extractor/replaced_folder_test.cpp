#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "extractor/folders.h"
#include "extractor/run.h"
#include "tests/support/capture.h"
#include "tests/support/fake_clock.h"
#include "tests/support/files.h"
#include "tests/support/temp_folder.h"

namespace fs = std::filesystem;
using FolderNames = std::vector<std::string>;
using test::writeFile;

// What fails, and what a path must hold for its rename to fail.
static bool exchangesFail = false;
static bool removalsFail = false;
static std::string unmovable;

static int fail(int error) {
  errno = error;
  return -1;
}

// These take the places of the C library's functions in this executable.
extern "C" int renameat2(int, const char* from, int, const char* to, unsigned flags) noexcept {
  if (exchangesFail) {
    return fail(EINVAL);
  }
  return static_cast<int>(syscall(SYS_renameat2, AT_FDCWD, from, AT_FDCWD, to, flags));
}

extern "C" int rename(const char* from, const char* to) noexcept {
  if (!unmovable.empty() && std::string(from).find(unmovable) != std::string::npos) {
    return fail(EXDEV);
  }
  return renameat(AT_FDCWD, from, AT_FDCWD, to);
}

extern "C" int remove(const char* path) noexcept {
  if (removalsFail) {
    return fail(EBUSY);
  }
  return unlink(path) == 0 ? 0 : rmdir(path);
}

namespace {

class ReplacedFolder : public testing::Test {
 protected:
  ReplacedFolder() {
    setPath(run_.masterFolder, folder_.path().c_str());
    writeFile(temp() + "/a", "new");
    writeFile(target() + "/old", "old");
  }
  ~ReplacedFolder() override {
    exchangesFail = false;
    removalsFail = false;
    unmovable.clear();
  }

  std::string temp() const { return folder_ / "temp"; }
  std::string target() const { return folder_ / "target"; }

  void move() {
    test::capture([&] { moveIntoPlace(run_, "application", temp().c_str(), target().c_str()); });
  }

  ExtractorRun run_{};
  test::TempFolder folder_;
  test::FakeClock clock_{1457000000000};
};

}  // namespace

TEST_F(ReplacedFolder, ThatCannotBeRemovedDoesNotCostTheNewOne) {
  removalsFail = true;
  move();
  EXPECT_EQ(FolderNames{"a"}, test::namesIn(target()));
  EXPECT_EQ(FolderNames{"old"}, test::namesIn(temp()));
}

TEST_F(ReplacedFolder, StandsAsideWhereFoldersCannotBeExchanged) {
  exchangesFail = true;
  move();
  EXPECT_EQ(FolderNames{"a"}, test::namesIn(target()));
  EXPECT_EQ(FolderNames{"target"}, test::namesIn(folder_.path()));
}

TEST_F(ReplacedFolder, ComesBackWhenTheNewOneIsCopiedAndTheCopyIsIncomplete) {
  exchangesFail = true;
  unmovable = "/temp";
  fs::create_symlink("nowhere", temp() + "/not-copied");
  const test::Result result = test::runInChild([this] { move(); });
  EXPECT_EQ(1, result.status);
  EXPECT_EQ(FolderNames{"old"}, test::namesIn(target()));
  EXPECT_EQ(FolderNames{"target"}, test::namesIn(folder_.path()));
}

TEST_F(ReplacedFolder, StaysWhereItIsWhenItCannotBeMovedAside) {
  exchangesFail = true;
  unmovable = "/target";
  const test::Result result = test::runInChild([this] { move(); });
  EXPECT_EQ(1, result.status);
  EXPECT_EQ(FolderNames{"old"}, test::namesIn(target()));
  EXPECT_EQ(FolderNames{"target"}, test::namesIn(folder_.path()));
}
