#include "support/files/paths.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "tests/support/capture.h"
#include "tests/support/files.h"
#include "tests/support/owned_text.h"
#include "tests/support/temp_folder.h"

using Lines = std::vector<std::string>;

namespace {

// A path buffer of exactly its size on the heap, where the address sanitizer sees every byte
// outside it.
class PathBuffer {
 public:
  explicit PathBuffer(const std::string& text = "") : bytes_(new char[PATH_BUFFER_SIZE]) {
    strcpy(bytes_, text.c_str());
  }
  ~PathBuffer() { delete[] bytes_; }
  PathBuffer(const PathBuffer&) = delete;
  PathBuffer& operator=(const PathBuffer&) = delete;
  operator char*() const { return bytes_; }
  std::string text() const { return bytes_; }

 private:
  char* bytes_;
};

}  // namespace

TEST(SetPath, JoinsThreePartsWithSlashes) {
  const PathBuffer path;
  EXPECT_STREQ("/a/b/c", setPath(path, "/a", "b", "c"));
}

TEST(SetPath, AddsNoSlashAfterAPartThatEndsInOne) {
  const PathBuffer path;
  EXPECT_STREQ("/a/b", setPath(path, "/a/", "b"));
}

TEST(SetPath, ReplacesWhatStoodInTheBuffer) {
  const PathBuffer path("/old/path");
  EXPECT_STREQ("a", setPath(path, "a"));
  EXPECT_STREQ("a/b/c/d", setPath(path, "a", "b", "c", "d"));
  EXPECT_STREQ("a/b/c/d/e", setPath(path, "a", "b", "c", "d", "e"));
}

TEST(SetPath, ReturnsTheBufferItself) {
  const PathBuffer path;
  EXPECT_EQ(static_cast<char*>(path), setPath(path, "a", "b"));
}

TEST(Pathcat, KeepsTheLeadingSlashOfThePart) {
  const PathBuffer path("a/");
  EXPECT_STREQ("a//b", pathcat(path, "/b"));
}

TEST(Pathcat, GivesSlashAndThePartForAnEmptyBuffer) {
  const PathBuffer path;
  EXPECT_STREQ("/b", pathcat(path, "b"));
}

TEST(Pathcat, AddsTheSlashForAnEmptyPart) {
  const PathBuffer path("a");
  EXPECT_STREQ("a/", pathcat(path, ""));
  EXPECT_STREQ("a/", pathcat(path, ""));
}

TEST(AppendToPath, AddsNoSeparator) {
  const PathBuffer path("/a");
  EXPECT_STREQ("/a.plugin", appendToPath(path, ".plugin"));
}

TEST(PathBounds, TakeAPathThatFillsTheBufferToItsLastByte) {
  const PathBuffer path;
  const std::string most(PATH_BUFFER_SIZE - 1, 'x');
  EXPECT_EQ(most, setPath(path, most.c_str()));
  EXPECT_EQ(most, setPath(path, most.substr(2).c_str()) + std::string(2, 'x'));
  EXPECT_EQ(most.substr(2) + "/y", pathcat(path, "y"));
}

TEST(PathBounds, MakeAPathThatIsOneByteTooLongUnusable) {
  const PathBuffer path;
  test::capture([&] {
    EXPECT_STREQ(UNUSABLE_PATH, setPath(path, std::string(PATH_BUFFER_SIZE, 'x').c_str()));
    setPath(path, std::string(PATH_BUFFER_SIZE - 2, 'x').c_str());
    EXPECT_STREQ(UNUSABLE_PATH, pathcat(path, "y"));
    setPath(path, std::string(PATH_BUFFER_SIZE - 1, 'x').c_str());
    EXPECT_STREQ(UNUSABLE_PATH, appendToPath(path, "y"));
    setPath(path, std::string(PATH_BUFFER_SIZE - 1, 'x').c_str());
    EXPECT_STREQ(UNUSABLE_PATH, pathcat(path, ""));
  });
}

TEST(PathBounds, LogAPathThatDoesNotFitOnce) {
  const PathBuffer path;
  const Lines lines = test::logLinesOf(
      [&] { setPath(path, "/a", std::string(100000, 'x').c_str(), "b", "c", "d"); });
  EXPECT_EQ((Lines{"[Utils] ERROR - Path does not fit its 5000 bytes: " + std::string(200, 'x')}),
            lines);
}

TEST(PathBounds, LeaveNothingThatCanBeCreatedAtAnUnusablePathOrBelowIt) {
  const PathBuffer path;
  test::capture([&] { setPath(path, std::string(PATH_BUFFER_SIZE, 'x').c_str(), "b", ".."); });
  EXPECT_EQ(0u, path.text().find(UNUSABLE_PATH));
  EXPECT_NE(0, mkdir(path, 0777));
  EXPECT_NE(0, mkdir(UNUSABLE_PATH, 0777));
  EXPECT_EQ(nullptr, fopen(UNUSABLE_PATH, "w"));
  EXPECT_EQ(nullptr, fopen(pathcat(path, "../../../../etc/passwd"), "r"));
}

TEST(ToNativePath, ChangesNothing) {
  char path[] = "/a/b\\c";
  EXPECT_EQ(path, toNativePath(path));
  EXPECT_STREQ("/a/b\\c", path);
}

TEST(IsAbsolutePath, LooksAtTheFirstCharacter) {
  EXPECT_TRUE(isAbsolutePath("/"));
  EXPECT_TRUE(isAbsolutePath("/a"));
  EXPECT_FALSE(isAbsolutePath("a/b"));
  EXPECT_FALSE(isAbsolutePath(""));
}

TEST(GetAbsoluteExePath, ReturnsTheVeryPointerOfAnAbsolutePath) {
  char path[] = "/Applications/App.app/Contents/MacOS/app";
  EXPECT_EQ(path, getAbsoluteExePath(path));
}

TEST(GetAbsoluteExePath, JoinsTheWorkingFolderWithARelativePathAsItIs) {
  char working[PATH_BUFFER_SIZE];
  ASSERT_NE(nullptr, getcwd(working, sizeof working));
  char path[] = "./a/../app";
  EXPECT_EQ(std::string(working) + "/./a/../app", test::takeText(getAbsoluteExePath(path)));
}

TEST(GetAbsoluteExePath, GivesAnUnusablePathWhenTheWorkingFolderIsGone) {
  const test::TempFolder folder;
  const test::Result result = test::runInChild([&] {
    const std::string gone = folder / "gone";
    if (mkdir(gone.c_str(), 0777) == 0 && chdir(gone.c_str()) == 0 && rmdir(gone.c_str()) == 0) {
      char path[] = "app";
      printf("%s\n", getAbsoluteExePath(path));
    }
  });
  EXPECT_EQ(
      (Lines{"[Utils] ERROR - No working folder to make a path absolute: app", UNUSABLE_PATH}),
      test::logLinesOf(result.out));
}

// Enters a new folder below `folder` whose path has `length` bytes; returns whether it could.
static bool enterPathOfLength(const std::string& folder, size_t length) {
  std::string path = folder;
  bool isInside = chdir(folder.c_str()) == 0;
  while (isInside && path.size() < length) {
    size_t step = std::min<size_t>(length - path.size() - 1, 100);
    step -= length - path.size() - 1 - step == 1 ? 1 : 0;  // a slash alone would be left
    const std::string name(step, 'd');
    isInside = mkdir(name.c_str(), 0777) == 0 && chdir(name.c_str()) == 0;
    path += "/" + name;
  }
  return isInside;
}

static std::string absolutePathFromAFolderOf(size_t length) {
  const test::TempFolder folder;
  const test::Result result = test::runInChild([&] {
    if (enterPathOfLength(folder.path(), length)) {
      char path[] = "app";
      printf("%s\n", getAbsoluteExePath(path));
    }
  });
  return test::linesOf(result.out).back();
}

TEST(GetAbsoluteExePath, TakesAWorkingFolderOf1023BytesAndNoLongerOne) {
  const std::string longest = absolutePathFromAFolderOf(1023);
  EXPECT_EQ(1023 + sizeof "/app" - 1, longest.size());
  EXPECT_EQ("/app", longest.substr(1023));
  EXPECT_EQ(UNUSABLE_PATH, absolutePathFromAFolderOf(1024));
}

TEST(GetAbsoluteExeDir, CutsAtTheLastSlash) {
  EXPECT_EQ("/Applications/App.app/Contents/MacOS",
            test::takeText(getAbsoluteExeDir("/Applications/App.app/Contents/MacOS/app")));
  EXPECT_EQ("a", test::takeText(getAbsoluteExeDir("a/")));
}

TEST(GetAbsoluteExeDir, IsEmptyWhenTheOnlySlashIsTheFirstCharacter) {
  EXPECT_EQ("", test::takeText(getAbsoluteExeDir("/app")));
}

TEST(GetAbsoluteExeDir, IsEmptyWithoutASlash) {
  EXPECT_EQ("", test::takeText(getAbsoluteExeDir("app")));
  EXPECT_EQ("", test::takeText(getAbsoluteExeDir("")));
}

TEST(GetAbsoluteExeDir, GivesAnUnusablePathForOneThatDoesNotFit) {
  test::capture([] {
    EXPECT_EQ(UNUSABLE_PATH,
              test::takeText(getAbsoluteExeDir(("/" + std::string(6000, 'x')).c_str())));
  });
}

TEST(PathToFile, PointsBehindTheLastSlash) {
  const char path[] = "/a/b.txt";
  EXPECT_EQ(path + 3, pathToFile(path));
  char folder[] = "/a/";
  EXPECT_EQ(folder + 3, pathToFile(folder));
}

TEST(PathToFile, IsThePathItselfWithoutASlash) {
  const char path[] = "b.txt";
  EXPECT_EQ(path, pathToFile(path));
  const char* empty = "";
  EXPECT_EQ(empty, pathToFile(empty));
}

static std::string tempPath(std::string dir, std::string name) {
  return test::takeText(allocTempPath(dir.data(), name.data()));
}

TEST(AllocTempPath, AddsASlashOnlyWhereOneIsMissing) {
  EXPECT_EQ("/a/b", tempPath("/a", "b"));
  EXPECT_EQ("/a/b", tempPath("/a/", "b"));
  EXPECT_EQ("/a//b", tempPath("/a/", "/b"));
}

TEST(AllocTempPath, AddsNoSlashToAnEmptyFolder) {
  EXPECT_EQ("b", tempPath("", "b"));
}

TEST(AllocTempPath, IsAsLongAsItsPartsAre) {
  const std::string dir(20000, 'd');
  EXPECT_EQ(dir + "/b", tempPath(dir, "b"));
}
