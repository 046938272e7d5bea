#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <string>

#include "extractor/run/names.h"
#include "extractor/runtime/java_version.h"
#include "extractor/runtime/run_command.h"
#include "extractor/runtime/version_file.h"
#include "formats/names.h"
#include "tests/support/capture.h"
#include "tests/support/files.h"
#include "tests/support/temp_folder.h"

namespace {

struct VersionRead {
  bool accepted;
  std::string version;
  std::string out;
};

VersionRead readVersion(std::string bytes) {
  VersionRead read{};
  char version[VERSION_TEXT_SIZE];
  read.out = test::capture([&] {
               FILE* file = fmemopen(bytes.data(), bytes.size(), "rb");
               read.accepted = readVersionText(file, version);
               fclose(file);
             }).out;
  read.version = version;
  return read;
}

// A program at `path` that prints its name, as every java of these tests does.
void makeJava(const std::string& path) {
  test::writeFile(path, "#!/bin/sh\necho java\n", 0755);
}

std::string versionOf(const std::string& java) {
  char* version = getJavaVersion(java.c_str());
  const std::string text = version;
  free(version);
  return text;
}

}  // namespace

TEST(VersionText, EndsAtABlank) {
  const VersionRead read = readVersion("1.8.0_151 and more text");
  EXPECT_TRUE(read.accepted);
  EXPECT_EQ("1.8.0_151", read.version);
  EXPECT_NE(std::string::npos,
            read.out.find("\n[JREDownload] Spaces in version file, assuming EOF\n"));
}

TEST(VersionText, EndsAtALineFeedAndAtACarriageReturn) {
  EXPECT_EQ("17", readVersion("17\n18").version);
  EXPECT_EQ("17", readVersion("17\r\n18").version);
}

TEST(VersionText, OfExactly50CharactersIsAccepted) {
  const VersionRead read = readVersion(std::string(50, '7'));
  EXPECT_TRUE(read.accepted);
  EXPECT_EQ(std::string(50, '7'), read.version);
}

TEST(VersionText, Of51CharactersIsRefused) {
  const VersionRead read = readVersion(std::string(51, '7'));
  EXPECT_FALSE(read.accepted);
  EXPECT_NE(std::string::npos, read.out.find("\n[JREDownload] Version invalid (too long)\n"));
}

TEST(VersionText, WithAZeroByteIsNoUsableVersion) {
  EXPECT_FALSE(isVersionText(readVersion(std::string("17\0/../x", 8)).version.c_str()));
}

TEST(VersionText, MayHoldLettersDigitsAndFourSignsOnly) {
  EXPECT_TRUE(isVersionText("1.8.0_151-b12+x"));
  for (const char* text : {"../1", "1/2", "1;2", "1\"", "$(x)", "1\t2", "1?", "v\xc3\xa9"}) {
    EXPECT_FALSE(isVersionText(text)) << text;
  }
}

TEST(InvalidUpdateUrl, IsThePlaceholderWithAnythingBehindIt) {
  EXPECT_TRUE(isInvalidUpdateURL("http://192.0.2.10/"));
  EXPECT_TRUE(isInvalidUpdateURL("http://192.0.2.10/x/"));
}

TEST(InvalidUpdateUrl, IsNoOtherUrlAndNotAMissingOne) {
  EXPECT_FALSE(isInvalidUpdateURL("http://192.0.2.1/"));
  EXPECT_FALSE(isInvalidUpdateURL("http://192.0.2.10"));
  EXPECT_FALSE(isInvalidUpdateURL(nullptr));
}

TEST(DownloadVersionFile, FromThePlaceholderIsSkipped) {
  const test::TempFolder folder;
  const auto lines = test::logLinesOf(
      [&] { downloadVersionFile(folder.path().c_str(), INVALID_UPDATE_URL, "Mac64JRE"); });
  EXPECT_EQ(std::vector<std::string>{"[Extractor] Invalid Update URL. Skipping..."}, lines);
  EXPECT_TRUE(test::namesIn(folder.path()).empty());
}

TEST(CommandOutput, LosesTrailingBlanksAndLineEndsButKeepsATab) {
  char* output = runCommandGetOutput("printf 'a b \\t \\r\\n\\n'");
  EXPECT_STREQ("a b \t", output);
  free(output);
}

// What stands before the buffer is not looked at, which the address sanitizer sees.
TEST(CommandOutput, OfACommandThatSaysNothingIsEmpty) {
  for (const char* command : {"true", "printf ' \\r\\n'"}) {
    char* output = runCommandGetOutput(command);
    EXPECT_STREQ("", output) << command;
    free(output);
  }
}

TEST(CommandOutput, BeyondTheBufferIsDropped) {
  char* output = runCommandGetOutput("head -c 20000 /dev/zero | tr '\\0' x");
  EXPECT_LE(strlen(output), 9999u);
  EXPECT_GE(strlen(output), 9990u);
  free(output);
}

TEST(CommandOutput, WhereNoPipeCanBeMadeIsNoneAndNothingRuns) {
  const test::TempFolder folder;
  const std::string command = "touch " + (folder / "ran");
  const test::Result result = test::runInChild([&] {
    const rlimit none{3, 3};
    setrlimit(RLIMIT_NOFILE, &none);
    _exit(runCommandGetOutput(command.c_str()) == nullptr ? 0 : 1);
  });
  EXPECT_EQ(0, result.status);
  EXPECT_FALSE(test::exists(folder / "ran"));
}

TEST(RunQuietly, GivesTheStatusAndShowsNothingOfTheProgram) {
  const char* const words[] = {"/bin/sh", "-c", "echo said; echo said >&2; exit 3", nullptr};
  int status = -1;
  const test::Captured said = test::capture([&] { status = runQuietly(words); });
  EXPECT_EQ(3, status);
  EXPECT_EQ("", said.out);
  EXPECT_EQ("", said.err);
}

TEST(ShellQuoted, KeepsEveryCharacterFromBeingCode) {
  const std::string nasty = "a'b\"c $(touch x) `touch y` \\ \n;&|<>*?";
  char* output = runCommandGetOutput(("printf %s " + shellQuoted(nasty)).c_str());
  EXPECT_EQ(nasty, output);
  free(output);
}

TEST(JavaVersion, IsWhatStandsBetweenThePathsFirstTwoDots) {
  const test::TempFolder folder;
  if (folder.path().find('.') != std::string::npos) {
    GTEST_FAIL() << "this test needs a build folder without dots in its path";
  }
  makeJava(folder / "jdk1.8.0_151.jdk/bin/java");
  EXPECT_EQ("8", versionOf(folder / "jdk1.8.0_151.jdk/bin/java"));
}

TEST(JavaVersion, OfAPathWithFewerThanTwoDotsIsZero) {
  const test::TempFolder folder;
  makeJava(folder / "jdk1.8/bin/java");
  EXPECT_EQ("0", versionOf(folder / "jdk1.8/bin/java"));
}

TEST(JavaVersion, RunsNothingThatThePathSpells) {
  const test::TempFolder folder;
  const std::string trap = folder / "trap";
  const std::string path = folder / "$(touch " + trap + ")`touch " + trap + "`\"; touch " + trap;
  test::capture([&] { versionOf(path); });
  EXPECT_FALSE(test::exists(trap));
}

TEST(JreRequirement, ThatIsEmptyPassesEveryRuntime) {
  EXPECT_TRUE(jreMatchesVersionRequirement("/nowhere/java", ""));
}

TEST(JreRequirement, Of7FailsAPathWithFewerThanTwoDots) {
  bool matches = true;
  const auto lines =
      test::logLinesOf([&] { matches = jreMatchesVersionRequirement("/nowhere/java", "7"); });
  EXPECT_FALSE(matches);
  EXPECT_TRUE(test::containsInOrder(
      lines, {"[Extractor] Checking JRE version requirements: 0 vs required 7"}));
}

TEST(JreRequirement, ThatIsMissingFailsAndSaysWhichOneIs) {
  bool matches = true;
  const auto lines =
      test::logLinesOf([&] { matches = jreMatchesVersionRequirement("/nowhere/java", nullptr); });
  EXPECT_FALSE(matches);
  EXPECT_TRUE(
      test::containsInOrder(lines, {"[Extractor] Versions for JREs could not be detected (0,1)"}));
}
