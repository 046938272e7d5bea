#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <string>
#include <vector>

#include "support/files/file_operations.h"
#include "support/files/paths.h"
#include "tests/support/capture.h"
#include "tests/support/files.h"
#include "tests/support/real_functions.h"
#include "tests/support/temp_folder.h"

namespace fs = std::filesystem;
using Lines = std::vector<std::string>;

static const std::string kStars = "*************************** ";

// Bytes that repeat in no power of two.
static std::string bytes(size_t count) {
  std::string text(count, '\0');
  for (size_t i = 0; i < count; ++i) {
    text[i] = static_cast<char>(i % 251);
  }
  return text;
}

// The sizes of the pieces written since the start, while they are gathered.
static std::vector<size_t>* written = nullptr;

// Takes the place of the C library's function in this executable.
extern "C" size_t fwrite(const void* bytes, size_t size, size_t count, FILE* file) {
  if (written != nullptr && file != stdout) {  // where the log's lines go
    written->push_back(size * count);
  }
  return test::realFwrite(bytes, size, count, file);
}

namespace {
class CopyFileOfSize : public testing::TestWithParam<size_t> {};
}  // namespace

TEST_P(CopyFileOfSize, GivesTheSameBytes) {
  const test::TempFolder folder;
  test::writeFile(folder / "from", bytes(GetParam()));
  EXPECT_EQ((Lines{"[Extractor] Copying FILE " + (folder / "to")}), test::logLinesOf([&] {
              copyFile((folder / "from").c_str(), (folder / "to").c_str());
            }));
  EXPECT_EQ(bytes(GetParam()), test::readFile(folder / "to"));
}

static std::vector<size_t> piecesOf(size_t size) {
  const test::TempFolder folder;
  test::writeFile(folder / "from", bytes(size));
  std::vector<size_t> pieces;
  test::capture([&] {
    written = &pieces;
    copyFile((folder / "from").c_str(), (folder / "to").c_str());
    written = nullptr;
  });
  return pieces;
}

TEST(CopyFile, OfExactlyOneBufferWritesItAndThenNothing) {
  EXPECT_EQ((std::vector<size_t>{50000, 0}), piecesOf(50000));
}

TEST(CopyFile, OfOneByteMoreThanABufferWritesThatByteByItself) {
  EXPECT_EQ((std::vector<size_t>{50000, 1}), piecesOf(50001));
}

INSTANTIATE_TEST_SUITE_P(Bytes, CopyFileOfSize,
                         testing::Values(0, 1, 49999, 50000, 50001, 100000, 250003),
                         [](const auto& info) { return std::to_string(info.param); });

TEST(CopyFile, TruncatesALongerTarget) {
  const test::TempFolder folder;
  test::writeFile(folder / "from", "new");
  test::writeFile(folder / "to", "something longer");
  test::capture([&] { copyFile((folder / "from").c_str(), (folder / "to").c_str()); });
  EXPECT_EQ("new", test::readFile(folder / "to"));
}

TEST(CopyFileWhole, ThatIsCutShortLeavesNothing) {
  const test::TempFolder folder;
  test::writeFile(folder / "from", std::string(100000, 'x'));
  const test::Result result = test::runInChild([&] {
    signal(SIGXFSZ, SIG_IGN);
    const rlimit limit{20000, 20000};
    setrlimit(RLIMIT_FSIZE, &limit);
    _exit(copyFileWhole((folder / "from").c_str(), (folder / "to").c_str(), 0644) ? 1 : 0);
  });
  EXPECT_EQ(0, result.status);
  EXPECT_EQ(std::vector<std::string>{"from"}, test::namesIn(folder.path()));
}

TEST(CopyFile, DoesNotCopyTheMode) {
  const test::TempFolder folder;
  test::writeFile(folder / "from", "x", 0755);
  const mode_t mask = umask(022);
  test::capture([&] { copyFile((folder / "from").c_str(), (folder / "to").c_str()); });
  umask(mask);
  EXPECT_EQ(0644u, test::modeOf(folder / "to"));
}

TEST(CopyFile, LogsASourceThatCannotBeOpenedAndLeavesTheTarget) {
  const test::TempFolder folder;
  test::writeFile(folder / "to", "kept");
  EXPECT_EQ((Lines{"[Extractor] Copying FILE " + (folder / "to"),
                   "[Extractor] " + kStars + "Unable to open source file for copy /absent"}),
            test::logLinesOf([&] { copyFile("/absent", (folder / "to").c_str()); }));
  EXPECT_EQ("kept", test::readFile(folder / "to"));
}

TEST(CopyFile, LogsATargetThatCannotBeOpenedAndClosesTheSource) {
  const test::TempFolder folder;
  test::writeFile(folder / "from", "x");
  const size_t before = test::openFiles();
  EXPECT_EQ(
      (Lines{"[Extractor] Copying FILE /absent/to",
             "[Extractor] " + kStars + "Unable to open destination file for copy /absent/to"}),
      test::logLinesOf([&] { copyFile((folder / "from").c_str(), "/absent/to"); }));
  EXPECT_EQ(before, test::openFiles());
}

namespace {

class CopyFolder : public testing::Test {
 protected:
  CopyFolder() {
    fs::create_directory(from());
    fs::create_directory(to());
  }
  std::string from() const { return folder_ / "from"; }
  std::string to() const { return folder_ / "to"; }
  int copy(Lines* lines = nullptr) {
    int result = -99;
    const Lines logged =
        test::logLinesOf([&] { result = copyFolder(from().c_str(), to().c_str()); });
    if (lines != nullptr) {
      *lines = logged;
    }
    return result;
  }

  test::TempFolder folder_;
};

}  // namespace

TEST_F(CopyFolder, CopiesTheTreeAndLogsEveryEntry) {
  test::writeFile(from() + "/sub/file", "bytes");
  Lines lines;
  EXPECT_EQ(0, copy(&lines));
  EXPECT_EQ("bytes", test::readFile(to() + "/sub/file"));
  EXPECT_EQ((Lines{"[CopyFolder] Copying DIR " + to() + "/sub",
                   "[ChMod] Executing chmod 777 \"" + to() + "/sub\"",
                   "[CopyFolder] Copying FILE " + to() + "/sub/file"}),
            lines);
}

TEST_F(CopyFolder, MergesIntoWhatStandsInTheTarget) {
  test::writeFile(from() + "/sub/new", "new");
  test::writeFile(from() + "/both", "new");
  test::writeFile(to() + "/sub/old", "old");
  test::writeFile(to() + "/both", "old");
  EXPECT_EQ(0, copy());
  EXPECT_EQ((Lines{"new", "old"}), test::namesIn(to() + "/sub"));
  EXPECT_EQ("new", test::readFile(to() + "/both"));
}

TEST_F(CopyFolder, LeavesTwoCharacterDotNamesOutAndCopiesLongerOnes) {
  test::writeFile(from() + "/.a", "");
  test::writeFile(from() + "/.DS_Store", "");
  EXPECT_EQ(0, copy());
  EXPECT_EQ((Lines{".DS_Store"}), test::namesIn(to()));
}

TEST_F(CopyFolder, GivesOneAndLogsANullForAMissingSource) {
  fs::remove(from());
  Lines lines;
  EXPECT_EQ(1, copy(&lines));
  EXPECT_EQ((Lines{"[CopyFolder] SourceDir from '" + from() + "' is NULL"}), lines);
}

TEST_F(CopyFolder, GivesOneAtOnceForASourceFileThatCannotBeOpened) {
  fs::create_symlink("nowhere", from() + "/dangling");
  const size_t before = test::openFiles();
  Lines lines;
  EXPECT_EQ(1, copy(&lines));
  EXPECT_EQ((Lines{"[CopyFolder] Copying FILE " + to() + "/dangling",
                   "[CopyFolder] " + kStars + "Unable to open source file for copy " + from() +
                       "/dangling"}),
            lines);
  EXPECT_EQ(before, test::openFiles());
}

TEST_F(CopyFolder, GivesOneAtOnceForATargetFileThatCannotBeOpened) {
  test::writeFile(from() + "/file", "");
  fs::create_directory(to() + "/file");
  Lines lines;
  EXPECT_EQ(1, copy(&lines));
  EXPECT_EQ("[CopyFolder] " + kStars + "Unable to open destination file for copy " + to() + "/file",
            lines.back());
}

TEST_F(CopyFolder, GivesTheResultOfAFolderThatCannotBeCreated) {
  test::writeFile(from() + "/outer/inner/file", "");
  test::writeFile(to() + "/outer/inner", "a file in the way");
  Lines lines;
  EXPECT_EQ(-1, copy(&lines));
  const std::string failed = "[CopyFolder] " + kStars + "Failed to copy " + from() + "/outer";
  EXPECT_TRUE(test::containsInOrder(
      lines, {failed + "/inner to " + to() + "/outer/inner (could not create target folder)",
              failed + " to " + to() + "/outer"}));
  EXPECT_EQ(failed + " to " + to() + "/outer", lines.back());
}

TEST_F(CopyFolder, CopiesWhatALinkLeadsTo) {
  test::writeFile(folder_ / "outside/file", "bytes");
  fs::create_symlink(folder_ / "outside", from() + "/link");
  EXPECT_EQ(0, copy());
  EXPECT_EQ("bytes", test::readFile(to() + "/link/file"));
  EXPECT_FALSE(fs::is_symlink(to() + "/link"));
}

TEST_F(CopyFolder, EndsWithAFailureForALinkThatLeadsRoundInACircle) {
  fs::create_symlink(".", from() + "/circle");
  EXPECT_NE(0, copy());
}

TEST_F(CopyFolder, CopiesATreeThatIsDeeperThanOpenFilesAreAllowed) {
  const std::string bottom = test::makeDeepFolder(from(), 100);
  test::writeFile(bottom + "/file", "bottom");
  const test::Result result = test::runInChild([&] {
    test::allowOpenFiles(32);
    _exit(copyFolder(from().c_str(), to().c_str()));
  });
  EXPECT_EQ(0, result.status);
  EXPECT_EQ("bottom", test::readFile(to() + bottom.substr(from().size()) + "/file"));
}
