#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <string>

#include "tests/blackbox/pack/small_project.h"
#include "tests/support/files.h"
#include "tests/support/test_keys.h"

namespace fs = std::filesystem;

namespace {

const std::string kVerifiedBundle = test::bundleIn("dist", "offline");

class PackVerify : public testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(project_.build().succeeded()); }

  test::Transcript verify(const std::string& bundle = kVerifiedBundle) {
    return project_.pack({"verify", bundle});
  }
  std::string inBundle(const std::string& name) {
    return project_ / kVerifiedBundle + "/Contents/" + name;
  }
  std::string tail() { return test::readFile(inBundle("Resources/Tail")); }
  void writeTail(const std::string& bytes) { test::writeFile(inBundle("Resources/Tail"), bytes); }

  // The complaint about the bundle, which must be this one alone.
  void expectProblem(const std::string& problem, test::Place place = test::Place::here()) {
    verify().fails(kVerifiedBundle + " would not work:\n  " + problem, place);
  }

  test::SmallProject project_;
};

TEST_F(PackVerify, OfASoundInstallerSaysWhatItHolds) {
  verify().ends(0).reports("").prints(
      "application name: Small App\n"
      "params file: 2 properties\n"
      "updater 5: 5 files, the signature is valid\n"
      "runtime 170015: 3 files, the signature is valid\n"
      "application 3: 4 files, the signature is valid\n"
      "made for linux-x86_64\n" +
      kVerifiedBundle + ": all is well\n");
}

TEST_F(PackVerify, SaysWhatItReads) {
  const test::Command command =
      test::packCommand(project_.path(), {"verify", kVerifiedBundle, "--site", "dist/site"});
  EXPECT_TRUE(test::containsInOrder(
      test::linesOf(test::run(command).err),
      {"[1] reading executable and Tail record", "[2] reading the updater",
       "[3] reading the runtime, which takes the most time", "[4] reading the application",
       "[5] reading the site, updater", "[6] reading the site, runtime",
       "[7] reading the site, application"}));
}

TEST_F(PackVerify, OfASoundInstallerIsSilentWhenAskedTo) {
  project_.pack({"verify", "--quiet", kVerifiedBundle}).ends(0).prints("").reports("");
}

TEST_F(PackVerify, TakesOnlineInstallersAndLauncherBundles) {
  verify(test::bundleIn("dist", "online") + "/").ends(0);
  verify(test::bundleIn("dist", "launcher"))
      .ends(0)
      .prints(
          "application name: Small App\n"
          "a launcher bundle: it carries no updater, so it installs nothing\n"
          "made for linux-x86_64\n" +
          test::bundleIn("dist", "launcher") + ": all is well\n");
}

TEST_F(PackVerify, NamesAFolderThatIsNoBundle) {
  verify("app").ends(1).reportsAlso("app is not an app bundle: Contents/Info.plist is missing");
}

TEST_F(PackVerify, FindsAMissingExecutable) {
  fs::remove(inBundle("MacOS/Small App"));
  expectProblem(kVerifiedBundle +
                "/Contents/Info.plist names the executable Small App, which is not at " +
                kVerifiedBundle + "/Contents/MacOS/Small App");
}

TEST_F(PackVerify, FindsAnExecutableThatMayNotBeExecuted) {
  fs::permissions(inBundle("MacOS/Small App"), fs::perms{0644});
  expectProblem(kVerifiedBundle +
                "/Contents/MacOS/Small App is not executable; run 'chmod 755' on it");
}

TEST_F(PackVerify, FindsAnInfoPlistThatNamesNoExecutable) {
  const std::string sound = test::readFile(inBundle("Info.plist"));
  const std::string name = "<string>Small App</string>";
  const size_t at = sound.find(name, sound.find("<key>CFBundleExecutable</key>"));
  ASSERT_NE(std::string::npos, at);
  for (const std::string other : {"", "../Small App"}) {
    std::string changed = sound;
    changed.replace(at, name.size(), "<string>" + other + "</string>");
    test::writeFile(inBundle("Info.plist"), changed);
    expectProblem(kVerifiedBundle +
                  "/Contents/Info.plist names no executable: CFBundleExecutable is \"" + other +
                  "\"");
  }
}

TEST_F(PackVerify, FindsAMissingTailRecord) {
  fs::remove(inBundle("Resources/Tail"));
  expectProblem(kVerifiedBundle +
                "/Contents/Resources/Tail cannot be read: No such file or directory");
}

TEST_F(PackVerify, FindsAMissingParamsFile) {
  fs::remove(inBundle("Resources/AppParams.excludefromsigning"));
  expectProblem(kVerifiedBundle +
                "/Contents/Resources/params.lproj/locversion.plist cannot be read: No such file or "
                "directory");
}

TEST_F(PackVerify, FindsAnyChangedByteOfAnArchive) {
  const std::string sound = tail();
  const size_t archive = sound.find("application.p2.l2");
  for (size_t at : {archive + 40, sound.size() - 60}) {
    std::string bytes = sound;
    bytes[at] = static_cast<char>(bytes[at] ^ 1);
    writeTail(bytes);
    verify().ends(1).reportsAlso("application: application.p2").mentions(", not verified\n");
  }
}

TEST_F(PackVerify, FindsATailRecordThatIsCutShort) {
  const std::string sound = tail();
  writeTail(sound.substr(0, sound.size() - 20));
  verify().ends(1);
  writeTail(sound.substr(0, sound.find("application.p2.l2") + 30));
  verify().ends(1).reportsAlso("Tail ends inside application.p2.l2: ");
}

TEST_F(PackVerify, FindsBytesBehindTheLastArchive) {
  writeTail(tail() + "more");
  expectProblem(kVerifiedBundle +
                "/Contents/Resources/Tail continues for 4 bytes after what is read");
}

TEST_F(PackVerify, FindsArchivesOfAnotherKey) {
  const std::string sound = tail();
  ASSERT_TRUE(project_.build({"--key", test::keyFile("second")}).succeeded());
  const std::string other = tail();
  const std::string start(1, '\0');
  const size_t updater = sound.find("lzma64");
  writeTail(sound.substr(0, updater) + other.substr(other.find("lzma64")));
  const test::Transcript result = verify();
  result.ends(1);
  for (const char* name : {"updater: updater", "runtime: runtime", "application: application"}) {
    result.reportsAlso(std::string("\n  ") + name +
                       ".p2.l2 was changed after it was signed, or signed with another key");
  }
}

TEST_F(PackVerify, FindsUnsignedArchivesWhereSignaturesAreAskedFor) {
  const std::string params = test::readFile(inBundle("Resources/AppParams.excludefromsigning"));
  project_.replace("[installer]\n", "[installer]\nrequire_signature = false\n");
  project_.replace("[signing]\nkey = \"release.key\"\n", "");
  ASSERT_TRUE(project_.build().succeeded());
  verify().ends(0);
  test::writeFile(inBundle("Resources/AppParams.excludefromsigning"), params);
  verify()
      .ends(1)
      .reportsAlso("the params file requires signatures, and the Tail record has no key")
      .reportsAlso("runtime: runtime.p2.l2 is not signed, and the params file requires signatures");
}

TEST_F(PackVerify, FindsANameThatCannotNameFolders) {
  std::string bytes = tail();
  bytes[5] = '-';
  writeTail(bytes);
  expectProblem(
      "the application's name \"Small-App\" cannot name its folders; it must not be empty or "
      "contain a '/' or a '-'");
}

// Replaces the field `from` of the record, the first one of that text, and looks at the complaint.
TEST_F(PackVerify, FindsValuesThatAHandMadeWrong) {
  struct Edit {
    std::string from;
    std::string to;
    std::string problem;
  };
  const std::string versions =
      "\"; versions are compared as whole numbers, so use up to 18 digits, or leave it empty if it "
      "is not carried";
  const std::string key = tail().substr(tail().find("3082"), 64);
  const Edit edits[] = {
      {test::field("Small App"), test::field("Small-App"),
       "the application's name \"Small-App\" cannot name its folders; it must not be empty or "
       "contain a '/' or a '-'"},
      {test::field("Small App"), test::field(""),
       "the application's name \"\" cannot name its folders; it must not be empty or contain a '/' "
       "or "
       "a '-'"},
      {test::field("3"), test::field("3a"), "the application's version is \"3a" + versions},
      {test::field("170015"), test::field("17.0.15"),
       "the runtime's version is \"17.0.15" + versions},
      {test::field("perm_user"), test::field("everyone"),
       "the install type is \"everyone\"; known are perm_all, perm_user and temporary"},
      {key, "zz" + key.substr(2),
       "the public key is not hexadecimal text; give what 'quorvane-pack key show' prints"},
      {key, "0000" + key.substr(4),
       "the public key in the Tail record cannot be used; make the installer again"},
  };
  const std::string sound = tail();
  for (const Edit& edit : edits) {
    const size_t at = sound.find(edit.from);
    ASSERT_NE(std::string::npos, at) << edit.from;
    writeTail(sound.substr(0, at) + edit.to + sound.substr(at + edit.from.size()));
    verify().ends(1).reportsAlso("  " + edit.problem + "\n");
  }
}

TEST_F(PackVerify, FindsAClassPathEntryThatIsMissing) {
  fs::remove(project_ / "updater/updater.jar");
  ASSERT_TRUE(project_.build().succeeded());
  expectProblem(
      "updater: its launch file has updater.jar in the class path, which it does not contain");
}

TEST_F(PackVerify, FindsAVersionThatTheRecordsDisagreeAbout) {
  std::string bytes = tail();
  const size_t version = bytes.find("Small App") + 10;
  ASSERT_EQ('3', bytes[version]);
  bytes[version] = '4';
  writeTail(bytes);
  expectProblem("application: version.txt says 3, the Tail record says 4");
}

TEST(PackHelp, OfEveryCommandHasAnExample) {
  const char* const commands[] = {"",
                                  "archive",
                                  "archive create",
                                  "archive list",
                                  "archive verify",
                                  "archive extract",
                                  "build",
                                  "init",
                                  "key",
                                  "key new",
                                  "key show",
                                  "launchfile",
                                  "launchfile write",
                                  "launchfile read",
                                  "params",
                                  "params write",
                                  "params read",
                                  "run",
                                  "tail",
                                  "tail write",
                                  "tail read",
                                  "verify"};
  for (const std::string command : commands) {
    const test::Transcript result = test::runShell("", "quorvane-pack " + command + " --help");
    result.ends(0);
    const size_t example = result.out.find("Example:\n  quorvane-pack ");
    ASSERT_NE(std::string::npos, example) << command;
    EXPECT_NE(std::string::npos, result.out.find("quorvane-pack " + command, example))
        << command << "\n"
        << result.out;
  }
}

TEST(PackOutput, ThatCannotBeWrittenEndsWithStatus1) {
  const test::SmallProject project;
  for (const std::string words : {"key show release.key", "--help", "--version"}) {
    test::runShell(project.path(), "quorvane-pack " + words + " > /dev/full")
        .fails("the output cannot be written: No space left on device");
  }
}

TEST(PackUsage, OfACommandThatDoesNotExistNamesTheNearestOne) {
  const char* const wrong[][3] = {{"bulid", "", "bulid'; did you mean 'build'?"},
                                  {"verfy", "dist", "verfy'; did you mean 'verify'?"},
                                  {"key", "nwe", "nwe'; did you mean 'new'?"},
                                  {"package", "dist", "package'"},
                                  {"xx", "", "xx'"}};
  for (const auto& [first, second, message] : wrong) {
    const std::vector<std::string> words =
        *second == '\0' ? std::vector<std::string>{first} : std::vector<std::string>{first, second};
    test::runPack("/", words)
        .ends(2)
        .reports(std::string("quorvane-pack: there is no command '") + message +
                 "\nRun with --help for more information.\n")
        .prints("");
  }
}

TEST(PackUsage, OfAPathThatNoSystemTakesSaysSo) {
  const std::string path(5000, 'x');
  for (const char* command : {"build", "init", "run", "verify"}) {
    test::runPack("/", {command, path})
        .ends(1)
        .reportsNo("filesystem error")
        .reportsAlso(path)
        .reportsAlso("File name too long");
  }
}

TEST(PackUsage, ThatIsWrongEndsWithStatus2) {
  test::runPack("", {}).ends(2);
  test::runPack("", {"pack"}).ends(2);
  test::runPack("", {"build", "--quiet", "--verbose"}).ends(2);
  test::runPack("", {"verify"}).ends(2);
}

TEST(PackVersion, IsPrintedAsNameAndNumberInOneLine) {
  test::runPack("", {"--version"}).ends(0).prints("quorvane-pack " QUORVANE_VERSION "\n");
}

}  // namespace
