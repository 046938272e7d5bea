#include "tools/system/texts.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

#include "tests/support/files.h"
#include "tests/support/temp_folder.h"
#include "tools/system/program_path.h"

namespace fs = std::filesystem;

TEST(StartsWith, IsTrueOfTheTextItselfAndOfNothing) {
  EXPECT_TRUE(tools::startsWith("http://x", "http://"));
  EXPECT_TRUE(tools::startsWith("a", "a"));
  EXPECT_TRUE(tools::startsWith("a", ""));
  EXPECT_FALSE(tools::startsWith("a", "ab"));
  EXPECT_FALSE(tools::startsWith("ba", "a"));
}

TEST(EndsWith, IsTrueOfTheTextItselfAndOfNothing) {
  EXPECT_TRUE(tools::endsWith("x.p2", ".p2"));
  EXPECT_TRUE(tools::endsWith(".p2", ".p2"));
  EXPECT_TRUE(tools::endsWith("a", ""));
  EXPECT_FALSE(tools::endsWith("2", ".p2"));
  EXPECT_FALSE(tools::endsWith("x.p2.l2", ".p2"));
}

TEST(Joined, HasTheSeparatorBetweenTheTextsAlone) {
  EXPECT_EQ("", tools::joined({}, ", "));
  EXPECT_EQ("a", tools::joined({"a"}, ", "));
  EXPECT_EQ("a, b, c", tools::joined({"a", "b", "c"}, ", "));
}

// PATH and the working folder are the process's own: the changes are made in this test alone.
class FindInPath : public testing::Test {
 protected:
  FindInPath() {
    for (const char* name : {"first/tool", "second/tool", "here/own"}) {
      test::writeFile(folder_ / name, "");
    }
    fs::create_directories(folder_ / "first/own");
    fs::current_path(folder_ / "here");
    setenv("PATH", (":" + (folder_ / "first") + ":" + (folder_ / "second")).c_str(), 1);
  }
  ~FindInPath() override {
    fs::current_path(earlierFolder_);
    setenv("PATH", earlierPath_.c_str(), 1);
  }

  const fs::path earlierFolder_ = fs::current_path();
  const std::string earlierPath_ = getenv("PATH");
  test::TempFolder folder_;
};

TEST_F(FindInPath, TakesTheFirstFolderThatHoldsTheFile) {
  EXPECT_EQ(folder_ / "first/tool", tools::findInPath("tool", false));
  EXPECT_EQ("", tools::findInPath("none", true));
}

TEST_F(FindInPath, TakesAnEmptyEntryForTheCurrentFolderWhereAskedTo) {
  EXPECT_EQ("./own", tools::findInPath("own", true));
  EXPECT_EQ("", tools::findInPath("own", false));
}
