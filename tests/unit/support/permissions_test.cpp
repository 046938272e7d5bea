#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <map>
#include <ostream>
#include <string>
#include <vector>

#include "support/files/file_operations.h"
#include "tests/support/capture.h"
#include "tests/support/files.h"
#include "tests/support/temp_folder.h"

namespace fs = std::filesystem;
using Lines = std::vector<std::string>;

static std::map<std::string, unsigned> modesBelow(const std::string& root) {
  std::map<std::string, unsigned> modes{{"", test::modeOf(root)}};
  for (const auto& entry : fs::recursive_directory_iterator(root)) {
    if (!entry.is_symlink()) {
      modes[entry.path().string().substr(root.size())] = test::modeOf(entry.path());
    }
  }
  return modes;
}

static void writeTree(const std::string& root) {
  test::writeFile(root + "/a", "", 0600);
  test::writeFile(root + "/.a", "", 0600);
  test::writeFile(root + "/.hidden", "", 0400);
  test::writeFile(root + "/deep/er/file", "", 0000);
  test::writeFile(root + "/closed/file", "", 0777);
  fs::permissions(root + "/closed", fs::perms(0000));
  fs::permissions(root + "/deep", fs::perms(0700));
  ASSERT_EQ(0, mkfifo((root + "/pipe").c_str(), 0600));
}

TEST(Chmod777, LogsTheCommandAndSetsTheModeOfTheFileAlone) {
  const test::TempFolder folder;
  const std::string path = folder / "folder";
  writeTree(path);
  const auto before = modesBelow(path);
  EXPECT_EQ((Lines{"[ChMod] Executing chmod 777 \"" + path + "\""}),
            test::logLinesOf([&] { chmod777(path.c_str()); }));
  auto after = modesBelow(path);
  EXPECT_EQ(0777u, after[""]);
  after[""] = before.at("");
  EXPECT_EQ(before, after);
}

TEST(Chmod777, SetsTheModeOfAFileThatCannotBeRead) {
  const test::TempFolder folder;
  test::writeFile(folder / "file", "", 0000);
  test::capture([&] { chmod777((folder / "file").c_str()); });
  EXPECT_EQ(0777u, test::modeOf(folder / "file"));
}

TEST(Chmod777, SaysNothingOfAPathThatIsMissing) {
  EXPECT_EQ((Lines{"[ChMod] Executing chmod 777 \"/absent\""}),
            test::logLinesOf([] { chmod777("/absent"); }));
}

TEST(ChmodR755, LogsTheCommandAndLeavesTheModesThatItLeavesInAShell) {
  const test::TempFolder folder;
  const std::string direct = folder / "direct";
  const std::string shell = folder / "shell";
  writeTree(direct);
  writeTree(shell);
  EXPECT_EQ((Lines{"[ChMod] Executing chmod -R 755 \"" + direct + "\""}),
            test::logLinesOf([&] { chmodR755(direct.c_str()); }));
  ASSERT_EQ(0, system(("chmod -R 755 \"" + shell + "\"").c_str()));
  EXPECT_EQ(modesBelow(shell), modesBelow(direct));
  EXPECT_EQ(0755u, test::modeOf(direct + "/closed/file"));
}

TEST(ChmodR755, SetsTheModeOfASingleFile) {
  const test::TempFolder folder;
  test::writeFile(folder / "file", "", 0600);
  test::capture([&] { chmodR755((folder / "file").c_str()); });
  EXPECT_EQ(0755u, test::modeOf(folder / "file"));
}

TEST(ChmodR755, DoesNotFollowALinkInTheTree) {
  const test::TempFolder folder;
  test::writeFile(folder / "outside/file", "", 0600);
  fs::permissions(folder / "outside", fs::perms(0700));
  fs::create_directory(folder / "tree");
  fs::create_symlink(folder / "outside", folder / "tree/folder link");
  fs::create_symlink(folder / "outside/file", folder / "tree/file link");
  const Lines lines = test::logLinesOf([&] { chmodR755((folder / "tree").c_str()); });
  EXPECT_EQ(0700u, test::modeOf(folder / "outside"));
  EXPECT_EQ(0600u, test::modeOf(folder / "outside/file"));
  EXPECT_EQ(1u, lines.size()) << "the command alone, which says nothing of links in a tree";
}

TEST(Chmod, DoesNotFollowALinkThatItIsGiven) {
  const test::TempFolder folder;
  test::writeFile(folder / "outside/file", "", 0600);
  fs::permissions(folder / "outside", fs::perms(0700));
  fs::create_symlink("outside", folder / "link");
  const Lines lines = test::logLinesOf([&] {
    chmod777((folder / "link").c_str());
    chmodR755((folder / "link").c_str());
  });
  const std::string warning = "[ChMod] Not following link " + (folder / "link");
  EXPECT_EQ(2, std::count(lines.begin(), lines.end(), warning));
  EXPECT_EQ(0700u, test::modeOf(folder / "outside"));
  EXPECT_EQ(0600u, test::modeOf(folder / "outside/file"));
}

TEST(ChmodR755, ReachesTheBottomOfATreeThatIsDeeperThanOpenFilesAreAllowed) {
  const test::TempFolder folder;
  const std::string bottom = test::makeDeepFolder(folder.path(), 100, 0700);
  const test::Result result = test::runInChild([&] {
    test::allowOpenFiles(32);
    chmodR755(folder.path().c_str());
  });
  EXPECT_EQ(test::CODE_RETURNED, result.status);
  EXPECT_EQ(0755u, test::modeOf(bottom));
}

namespace {

struct NameCase {
  const char* label;
  const char* name;
};

// What a failure, and the test's name, show of it.
void PrintTo(const NameCase& value, std::ostream* out) {
  *out << value.label;
}

class OddName : public testing::TestWithParam<NameCase> {
 protected:
  test::TempFolder folder_;
};

}  // namespace

// Runs `code` with a working folder of its own, in which a command that escaped would leave a file.
static Lines namesLeftBy(const std::string& folder, const std::function<void()>& code) {
  const test::Result result = test::runInChild([&] {
    if (chdir(folder.c_str()) == 0) {
      code();
    }
  });
  EXPECT_EQ(test::CODE_RETURNED, result.status);
  return test::namesIn(folder);
}

TEST_P(OddName, IsNoCodeForChmod) {
  const std::string path = folder_ / GetParam().name;
  test::writeFile(path + "/file", "", 0600);
  EXPECT_EQ((Lines{GetParam().name}),
            namesLeftBy(folder_.path(), [&] { chmodR755(path.c_str()); }));
  EXPECT_EQ(0755u, test::modeOf(path));
  EXPECT_EQ(0755u, test::modeOf(path + "/file"));
  namesLeftBy(folder_.path(), [&] { chmod777(path.c_str()); });
  EXPECT_EQ(0777u, test::modeOf(path));
  EXPECT_EQ(0755u, test::modeOf(path + "/file"));
}

TEST_P(OddName, IsNoCodeForMakeDir) {
  const std::string path = folder_ / GetParam().name;
  EXPECT_EQ((Lines{GetParam().name}), namesLeftBy(folder_.path(), [&] { makeDir(path.c_str()); }));
  EXPECT_EQ(0777u, test::modeOf(path));
}

INSTANTIATE_TEST_SUITE_P(
    With, OddName,
    testing::Values(NameCase{"Blanks", " a b "}, NameCase{"DoubleQuotes", "a\"; touch made; \""},
                    NameCase{"SingleQuotes", "a'; touch made; '"},
                    NameCase{"Substitution", "$(touch made)"}, NameCase{"Variable", "$HOME"},
                    NameCase{"Backquotes", "`touch made`"}, NameCase{"Newline", "a\ntouch made\n"},
                    NameCase{"Backslash", "a\\"}, NameCase{"Star", "*"},
                    NameCase{"LeadingHyphen", "-R"}, NameCase{"Percent", "%s%n"},
                    NameCase{"Utf8", "\xC3\xA4\xE6\x97\xA5"}, NameCase{"InvalidUtf8", "\xFF"}),
    [](const auto& info) { return info.param.label; });

TEST(SetModeWithoutLink, ReachesAFileThatMayNotBeRead) {
  const test::TempFolder folder;
  test::writeFile(folder / "file", "", 0600);
  const bool isSuperuser = geteuid() == 0;
  ASSERT_TRUE(!isSuperuser || chown((folder / "file").c_str(), 65534, 65534) == 0);
  ASSERT_EQ(0, chmod((folder / "file").c_str(), 0));
  const test::Result result = test::runInChild([&] {
    const bool isReady = chdir(folder.path().c_str()) == 0 && chmod(".", 0755) == 0 &&
                         (!isSuperuser || seteuid(65534) == 0);
    _exit(isReady && setModeWithoutLink("file", 0640) == 0 ? 0 : 1);
  });
  EXPECT_EQ(0, result.status);
  EXPECT_EQ(0640u, test::modeOf(folder / "file"));
}
