#include "tools/bundle/output_folder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "tests/support/files.h"
#include "tests/support/temp_folder.h"
#include "tools/system/input_error.h"

namespace fs = std::filesystem;

namespace {

using Texts = std::vector<std::string>;

class OutputFolder : public testing::Test {
 protected:
  void make(const Texts& names, const std::string& content) {
    tools::OutputFolder output(path_);
    for (const std::string& name : names) {
      test::writeFile(output / name + "/file", content);
    }
    output.finish();
  }

  test::TempFolder folder_;
  std::string path_ = folder_ / "dist";
};

TEST_F(OutputFolder, ReplacesEarlierResultsAndLeavesNothingElse) {
  make({"a", "b"}, "old");
  make({"b", "c"}, "new");
  EXPECT_EQ((Texts{tools::OUTPUT_LIST, "b", "c"}), test::namesIn(path_));
  EXPECT_EQ("new", test::readFile(path_ + "/b/file"));
  EXPECT_EQ((Texts{"b", "c"}), tools::madeIn(path_));
}

TEST_F(OutputFolder, KeepsAllEarlierResultsWhenANewOneCannotBePutInPlace) {
  make({"a", "b"}, "old");
  {
    tools::OutputFolder output(path_);
    for (const char* name : {"a", "b", "c"}) {
      test::writeFile(output / name + "/file", "new");
    }
    test::writeFile(path_ + "/c/in the way", "");
    EXPECT_THROW(output.finish(), tools::InputError);
  }
  EXPECT_EQ((Texts{tools::OUTPUT_LIST, "a", "b", "c"}), test::namesIn(path_));
  EXPECT_EQ("old", test::readFile(path_ + "/a/file"));
  EXPECT_EQ("old", test::readFile(path_ + "/b/file"));
  EXPECT_EQ((Texts{"in the way"}), test::namesIn(path_ + "/c"));
  EXPECT_EQ((Texts{"a", "b"}), tools::madeIn(path_));
}

TEST_F(OutputFolder, RemovesTheListThatAKilledBuildDidNotFinish) {
  make({"a"}, "old");
  test::writeFile(path_ + "/.quorvane-output.part-aBc123", "Made by");
  make({"b"}, "new");
  EXPECT_EQ((Texts{tools::OUTPUT_LIST, "b"}), test::namesIn(path_));
}

TEST_F(OutputFolder, PutsEarlierResultsBackThatAKilledBuildWasReplacing) {
  make({"a", "b"}, "old");
  fs::create_directory(path_ + "/.quorvane-replaced");
  fs::rename(path_ + "/a", path_ + "/.quorvane-replaced/a");
  test::writeFile(path_ + "/a/file", "new");
  { const tools::OutputFolder output(path_); }
  EXPECT_EQ((Texts{tools::OUTPUT_LIST, "a", "b"}), test::namesIn(path_));
  EXPECT_EQ("old", test::readFile(path_ + "/a/file"));
}

}  // namespace
