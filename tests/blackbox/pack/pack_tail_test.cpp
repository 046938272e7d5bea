#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "tests/blackbox/pack/transcript.h"
#include "tests/support/files.h"
#include "tests/support/format_examples.h"
#include "tests/support/launcher_bundle.h"
#include "tests/support/tail.h"

namespace fs = std::filesystem;
using Texts = std::vector<std::string>;

namespace {

test::Transcript pack(Texts words) {
  words.insert(words.begin(), "tail");
  return test::runPack(words);
}

Texts everyValue() {
  return {"--app-name",
          "Demo",
          "--app-version",
          "12",
          "--jre-version",
          "1407",
          "--gu-version",
          "3",
          "--min-splash-ms",
          "500",
          "--public-key",
          "3082",
          "--can-override-splash",
          "--install-type",
          "perm_user",
          "--silent-parameter=-quiet",
          "--required-java-version",
          "17",
          "--update-url",
          "http://127.0.0.1/"};
}

Texts with(Texts words, const Texts& more) {
  words.insert(words.end(), more.begin(), more.end());
  return words;
}

const Texts kPrinted = {"app-name: Demo",
                        "app-version: 12",
                        "jre-version: 1407",
                        "gu-version: 3",
                        "min-splash-ms: 500",
                        "public-key: 3082",
                        "can-override-splash: 1",
                        "install-type: perm_user",
                        "silent-parameter: -quiet",
                        "required-java-version: 17",
                        "update-url: http://127.0.0.1/"};

TEST(PackTail, WritesTheResourcesTailOfABundleAndReadsEveryValueBack) {
  const test::TempFolder folder;
  const std::string bundle = folder / "Demo.app";
  fs::create_directories(bundle + "/Contents/MacOS");
  pack(with({"write", bundle}, everyValue())).ends(0).prints("");
  EXPECT_EQ(0644u, test::modeOf(bundle + "/Contents/Resources/Tail"));
  const test::Transcript read = pack({"read", bundle});
  read.ends(0);
  EXPECT_EQ(with(kPrinted, {"place: file", "bytes-behind: 0"}), test::linesOf(read.out));
}

TEST(PackTail, PutsARecordBehindAnExecutableAndReadsEveryValueBack) {
  const test::LauncherBundle bundle;
  const auto size = fs::file_size(bundle.executable());
  pack(with({"write", "--append", bundle.executable()}, everyValue())).ends(0);
  const test::Transcript read = pack({"read", bundle.executable()});
  EXPECT_EQ(
      with(kPrinted, {"place: appended, at byte " + std::to_string(size + 128), "bytes-behind: 0"}),
      test::linesOf(read.out));
}

TEST(PackTail, IsWhatTheLauncherReadsBehindItsExecutable) {
  const test::LauncherBundle bundle;
  ASSERT_TRUE(pack(with({"write", "--append", bundle.executable()}, everyValue())).succeeded());
  const test::Result result = bundle.runWithoutDisplay({});
  EXPECT_TRUE(test::containsInOrder(
      test::messagesOf(result.out),
      {"[Launcher] Found tail marker", "[Launcher] App Name = Demo", "[Launcher] App Version = 12",
       "[Launcher] JRE Version = 1407", "[Launcher] GU Version = 3",
       "[Launcher] Min Splash MS = 500", "[Launcher] Signature Public Key = 3082",
       "[Launcher] Can Override Splash = 1", "[Launcher] Install Type = perm_user",
       "[Launcher] Silent Parameter = -quiet", "[Launcher] Update URL = 17"}));
}

TEST(PackTail, MakesTheFormatsExampleWithTheCommandThatTheDocumentShows) {
  const test::TempFolder folder;
  test::writeFile(folder / "Hello", "");
  test::runShell(folder.path(), test::formatBlock("sh", "tail-record")).ends(0);
  EXPECT_EQ(test::formatBlock("hex", "tail-record"),
            test::hexDump(test::readFile(folder / "Hello")));
}

TEST(PackTail, PrintsOneValueAlone) {
  const test::TempFolder folder;
  ASSERT_TRUE(pack({"write", folder / "Tail", "--app-name", "Demo"}).succeeded());
  pack({"read", folder / "Tail", "--value", "app-name"}).prints("Demo\n");
}

// A record that another hand wrote is shown as it is, whatever its values are worth.
TEST(PackTail, ShowsValuesThatItWouldNotWrite) {
  const test::TempFolder folder;
  const Texts values = {"a/b", "1.2", "", "-1", "soon", "key", "yes", "all", "a\nb", "\xff", ""};
  std::string record;
  for (const std::string& value : values) {
    record += test::field(value);
  }
  test::writeFile(folder / "Tail", record + "more");
  pack({"read", folder / "Tail"})
      .ends(0)
      .prints(
          "app-name: a/b\napp-version: 1.2\njre-version: \ngu-version: -1\nmin-splash-ms: soon\n"
          "public-key: key\ncan-override-splash: yes\ninstall-type: all\nsilent-parameter: a\nb\n"
          "required-java-version: \xff\nupdate-url: \nplace: file\nbytes-behind: 4\n");
}

TEST(PackTail, OfWrongInputSaysWhatAndEndsWithStatusOne) {
  const test::TempFolder folder;
  pack({"write", folder / "Tail", "--app-name", "a-b"})
      .fails(
          "the application's name \"a-b\" cannot name its folders; it must not be empty or contain "
          "a '/' or a '-'");
  EXPECT_EQ(Texts{}, test::namesIn(folder.path()));
}

TEST(PackTail, OfWrongUsageEndsWithStatusTwo) {
  const test::TempFolder folder;
  pack({"write", "--app-name", "Demo"}).ends(2);
  pack({"write", folder / "Tail"}).ends(2);
  pack({"write", folder / "Tail", "--append", folder / "x", "--app-name", "D"}).ends(2);
  pack({"read"}).ends(2);
  pack({"read", folder / "Tail", "--value", "none"}).ends(2);
}

TEST(PackTail, ShowsAnExampleInItsHelp) {
  pack({"write", "--help"}).mentions("Example:");
  pack({"read", "--help"}).mentions("Example:");
}

}  // namespace
