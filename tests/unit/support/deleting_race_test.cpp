#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "support/files/file_operations.h"
#include "tests/support/capture.h"
#include "tests/support/files.h"
#include "tests/support/real_functions.h"
#include "tests/support/swapper.h"
#include "tests/support/temp_folder.h"

namespace fs = std::filesystem;
using Lines = std::vector<std::string>;

// What happens just before the next deletion; whether it then fails.
static std::function<void()> beforeDeletion;
static std::string undeletable;

// Whether the deletion of this name is to fail.
static bool isToFail(const char* path) {
  if (const std::function<void()> action = std::move(beforeDeletion)) {
    beforeDeletion = nullptr;
    action();
  }
  if (undeletable.empty() || fs::path(path).filename() != undeletable) {
    return false;
  }
  errno = EBUSY;
  return true;
}

// These take the places of the C library's functions in this executable.
extern "C" int unlinkat(int folder, const char* path, int flags) {
  return isToFail(path) ? -1 : test::realUnlinkat(folder, path, flags);
}

extern "C" int remove(const char* path) {
  return isToFail(path) ? -1 : unlink(path) == 0 ? 0 : rmdir(path);
}

namespace {

// A tree with a folder in it, and a link to a folder of a victim's that holds the same names.
class DeletingRace : public testing::Test {
 protected:
  DeletingRace() {
    makeVictim();
    fs::create_symlink(victim(), link());
    makeTree();
  }
  ~DeletingRace() override {
    beforeDeletion = nullptr;
    undeletable.clear();
  }

  void makeVictim() {
    for (const char* name : {"a", "b", "c"}) {
      test::writeFile(victim() + "/" + name, "precious");
    }
  }

  void makeTree() {
    for (const char* name : {"a", "b", "c"}) {
      test::writeFile(inTree(std::string("folder/") + name), "x");
    }
  }

  void swapBeforeTheFirstDeletion(const std::string& one) {
    beforeDeletion = [this, one] { ASSERT_TRUE(test::swap(one, link())); };
  }

  void expectVictimUntouched() { EXPECT_EQ((Lines{"a", "b", "c"}), test::namesIn(victim())); }

  std::string tree() const { return folder_ / "tree"; }
  std::string inTree(const std::string& name) const { return tree() + "/" + name; }
  std::string link() const { return folder_ / "link"; }
  std::string victim() const { return folder_ / "victim"; }

  test::TempFolder folder_;
};

}  // namespace

TEST_F(DeletingRace, FolderThatALinkReplacesWhileItIsEmptiedLeadsNowhere) {
  swapBeforeTheFirstDeletion(inTree("folder"));
  test::capture([this] { deleteFolder(tree().c_str()); });
  expectVictimUntouched();
  EXPECT_EQ((Lines{}), test::namesIn(link()));  // the folder itself, which was emptied
}

TEST_F(DeletingRace, TopThatALinkReplacesWhileItIsEmptiedLeadsNowhere) {
  fs::create_directory(victim() + "/folder");
  test::writeFile(victim() + "/folder/a", "precious");
  test::writeFile(victim() + "/folder/b", "precious");
  swapBeforeTheFirstDeletion(tree());
  test::capture([this] { EXPECT_FALSE(removeTree(tree().c_str())); });
  EXPECT_EQ((Lines{"a", "b", "c", "folder"}), test::namesIn(victim()));
  EXPECT_EQ((Lines{"a", "b"}), test::namesIn(victim() + "/folder"));
  EXPECT_TRUE(fs::is_symlink(tree()));
  EXPECT_EQ((Lines{}), test::namesIn(link()));
}

TEST_F(DeletingRace, FolderThatIsMovedAwayWhileItIsEmptiedTakesNothingAlong) {
  test::writeFile(inTree("folder/sub/file"), "x");
  test::writeFile(inTree("last"), "x");
  const std::string elsewhere = victim() + "/moved";
  beforeDeletion = [&] { fs::rename(inTree("folder"), elsewhere); };
  test::capture([this] { removeTree(tree().c_str()); });
  EXPECT_EQ((Lines{"a", "b", "c", "moved"}), test::namesIn(victim()));
  EXPECT_FALSE(test::exists(inTree("last")));
}

TEST_F(DeletingRace, LostByTheOneThatDeletesCostsNoForeignFile) {
  const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(1500);
  int rounds = 0;
  int lost = 0;
  long swaps = 0;
  while (std::chrono::steady_clock::now() < end) {
    makeTree();
    {
      const test::Swapper swapper(inTree("folder"), link());
      test::capture([this] { removeTree(tree().c_str()); });
      swaps += swapper.count();
    }
    ++rounds;
    if (test::namesIn(victim()).size() < 3) {
      ++lost;
      makeVictim();
    }
    // The link may be anywhere now; the next round begins as the first one did.
    fs::remove_all(tree());
    fs::remove_all(link());
    fs::create_symlink(victim(), link());
  }
  printf("%d removals, %ld swaps, %d with a loss\n", rounds, swaps, lost);
  EXPECT_EQ(0, lost) << "of " << rounds << " removals, during " << swaps << " swaps";
  EXPECT_LT(0, swaps);
}

TEST_F(DeletingRace, DeletionThatFailsIsLoggedAndTheRestIsDeleted) {
  undeletable = "b";
  const Lines lines = test::logLinesOf([this] { EXPECT_EQ(0, deleteFolder(tree().c_str())); });
  EXPECT_EQ((Lines{"b"}), test::namesIn(inTree("folder")));
  EXPECT_EQ(1,
            std::count(lines.begin(), lines.end(), "Failed to delete file " + inTree("folder/b")));
  undeletable.clear();
  test::capture([this] { EXPECT_TRUE(removeTree(tree().c_str())); });
}
