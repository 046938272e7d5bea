#include "support/files/file_kind.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <string>

#include "support/files/file_operations.h"
#include "tests/support/files.h"
#include "tests/support/temp_folder.h"

namespace fs = std::filesystem;

namespace {

class ExecutableQuestion : public testing::Test {
 protected:
  std::string file(fs::perms mode) const {
    test::writeFile(folder_ / "file", "bytes");
    fs::permissions(folder_ / "file", mode);
    return folder_ / "file";
  }

  const test::TempFolder folder_;
};

}  // namespace

TEST_F(ExecutableQuestion, IsAnsweredForAnExecutableAndForALinkToIt) {
  const std::string executable = file(fs::perms::owner_all);
  fs::create_symlink(executable, folder_ / "link");
  for (const std::string& path : {executable, std::string(folder_ / "link")}) {
    EXPECT_TRUE(isExecutable(path.c_str())) << path;
    errno = EACCES;  // of an earlier call
    EXPECT_FALSE(isKnownNotExecutable(path.c_str())) << path;
  }
}

TEST_F(ExecutableQuestion, IsAnsweredForWhatIsNone) {
  const std::string plain = file(fs::perms::owner_read);
  fs::create_symlink(folder_ / "circle", folder_ / "circle");
  for (const std::string& path :
       {plain, std::string(folder_.path()), std::string(folder_ / "missing"), plain + "/below",
        std::string(folder_ / "circle")}) {
    EXPECT_FALSE(isExecutable(path.c_str())) << path;
    EXPECT_TRUE(isKnownNotExecutable(path.c_str())) << path;
  }
}

TEST_F(ExecutableQuestion, StaysOpenWhereTheSystemCannotTell) {
  const std::string path = folder_ / std::string(300, 'n');  // longer than a name may be
  EXPECT_FALSE(isExecutable(path.c_str()));
  EXPECT_FALSE(isKnownNotExecutable(path.c_str()));
}

TEST(PathQuestion, TellsALinkFromWhereItLeads) {
  const test::TempFolder folder;
  test::writeFile(folder / "file", "bytes");
  fs::create_symlink("file", folder / "link");
  fs::create_symlink("missing", folder / "dangling");
  fs::create_symlink("circle", folder / "circle");
  const auto path = [&folder](const char* name) { return std::string(folder / name); };
  for (const char* name : {"link", "dangling", "circle"}) {
    EXPECT_TRUE(isLink(path(name).c_str())) << name;
  }
  for (const char* name : {"file", "missing", "."}) {
    EXPECT_FALSE(isLink(path(name).c_str())) << name;
  }
  for (const char* name : {"missing", "dangling", "circle", "file/below"}) {
    EXPECT_TRUE(isMissingOrBrokenLink(path(name).c_str())) << name;
  }
  for (const char* name : {"file", "link", "."}) {
    EXPECT_FALSE(isMissingOrBrokenLink(path(name).c_str())) << name;
  }
}

TEST(PathQuestion, StaysOpenWhereTheSystemCannotTell) {
  const test::TempFolder folder;
  const std::string path = folder / std::string(300, 'n');  // longer than a name may be
  EXPECT_FALSE(exists(path.c_str()));
  EXPECT_FALSE(isDefinitelyMissing(path.c_str()));
  EXPECT_FALSE(isMissingOrBrokenLink(path.c_str()));
  EXPECT_FALSE(removeTree(path.c_str()));
}

TEST(Content, IsLackedByWhatIsMissingEmptyOrNoFile) {
  const test::TempFolder folder;
  test::writeFile(folder / "empty", "");
  test::writeFile(folder / "full", "x");
  fs::create_directory(folder / "folder");
  for (const char* name : {"missing", "empty", "folder"}) {
    EXPECT_TRUE(lacksContent((folder / name).c_str())) << name;
  }
  EXPECT_FALSE(lacksContent((folder / "full").c_str()));
}
