#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <string>
#include <vector>

#include "tests/blackbox/pack/small_project.h"
#include "tests/support/files.h"
#include "tests/support/mach_file.h"
#include "tests/support/object_headers.h"
#include "tests/support/test_keys.h"
#include "tools/bundle/bundle_reader.h"

namespace fs = std::filesystem;

namespace {

const std::string kOffline = test::bundleIn("dist", "offline");
const std::string kLauncher = test::bundleIn("dist", "launcher");
const std::string kResults =
    "offline installer  dist/" + test::downloadOf() + "\nonline installer   dist/" +
    test::downloadOf("-online") +
    "\n"
    "update site        dist/site\n"
    "index              dist/index.json\n"
    "note: [installer] has no update_url, so the online installer cannot download a runtime\n";

std::string tailValue(const test::SmallProject& project, const std::string& bundle,
                      const std::string& name) {
  return project.pack({"tail", "read", bundle, "--value", name}).out;
}

// Makes the bundles of a target that is the same on every machine. The downloads are not compared:
// their bytes depend on zlib.
void expectTheSameBundlesAsEver(const test::SmallProject& project) {
  for (const std::string& name : test::namesIn(project / "dist")) {
    if (name.rfind("Small App-3-macos-x86_64", 0) == 0 || name == "index.json") {
      fs::remove(project / "dist/" + name);
    }
  }
  EXPECT_EQ(test::readFile(QUORVANE_SOURCE "/tests/data/packager/small_project.manifest"),
            test::manifestOf(project / "dist"));
}

// Changed bytes here mean that every application's installers change: only with a reason. The
// compressed records also depend on liblzma's encoder.
TEST(PackBuild, OfTheSmallProjectGivesTheSameBytesAndModesAsEver) {
  const test::SmallProject project;
  ASSERT_TRUE(project.build({"--target", "macos-x86_64"}).succeeded());
  expectTheSameBundlesAsEver(project);
}

TEST(PackBuild, ElsewhereAndUnderAnotherUmaskGivesTheSameBytesAndModes) {
  const test::SmallProject first;
  const test::SmallProject second;
  ASSERT_TRUE(first.build().succeeded());
  umask(077);
  ASSERT_TRUE(second.build().succeeded());
  umask(022);
  EXPECT_EQ(test::manifestOf(first / "dist"), test::manifestOf(second / "dist"));
}

TEST(PackBuild, SaysWhatItMadeAndNothingElse) {
  const test::SmallProject project;
  project.buildDownloads().ends(0).prints(kResults).reports("");
}

TEST(PackBuild, IsSilentWhenAskedTo) {
  const test::SmallProject project;
  project.build({"--quiet"}).ends(0).prints("").reports("");
}

TEST(PackBuild, NamesItsStepsWhenAskedTo) {
  const test::SmallProject project;
  const test::Transcript result = project.buildDownloads({"--verbose"});
  result.ends(0).prints(kResults);
  EXPECT_EQ((std::vector<std::string>{
                "[1/8] reading quorvane.toml", "[2/8] checking the runtime",
                "[3/8] using the runtime runtime", "      everything is for linux-x86_64",
                "[4/8] packing the runtime, which takes the most time",
                "[5/8] packing application and updater for the update site",
                "[6/8] writing the offline installer", "[7/8] writing the online installer",
                "[8/8] writing the downloads"}),
            test::linesOf(result.err));
}

// What a log keeps.
TEST(PackBuild, WithoutATerminalPrintsALineForEachStepOnceItBegins) {
  const test::SmallProject project;
  test::writeFile(project / "quorvane.toml", project.text);
  const test::Transcript result =
      test::transcriptOf(test::packCommand(project.path(), {"build", "--executables", "bin"}));
  result.prints(kResults);
  EXPECT_TRUE(test::containsInOrder(
      test::linesOf(result.err),
      {"[1/8] reading quorvane.toml", "[2/8] checking the runtime", "[8/8] writing the downloads"}))
      << result.err;
  EXPECT_EQ("", test::withoutProgress(result.err));
}

TEST(PackBuild, ThatTakesLongSaysHowLong) {
  test::SmallProject project;
  project.replace("folder = \"runtime\"", "jdk = \"jdk\"\nmodules = [\"java.base\"]");
  test::writeFile(project / "jdk/bin/jlink",
                  "#!/bin/sh\nsleep 1.1\nwhile [ \"$1\" != --output ]; do shift; done\n"
                  "mkdir -p \"$2/bin\" && echo java > \"$2/bin/java\"\n"
                  "echo 'JAVA_VERSION=\"21.0.4\"' > \"$2/release\"\n",
                  0755);
  const test::Transcript result = project.build({"--verbose"});
  result.ends(0);
  const std::string last = test::linesOf(result.err).back();
  EXPECT_EQ(0u, last.find("done in ")) << last;
  EXPECT_EQ(" s", last.substr(last.size() - 2));
  EXPECT_LE(1, std::stoi(last.substr(8)));
}

TEST(PackBuild, ShowsOneChangingLineOnATerminalAndTakesItAway) {
  const test::SmallProject project;
  ASSERT_TRUE(project.build().succeeded());
  test::Command command;
  command.arguments = {"/usr/bin/script",
                       "--quiet",
                       "--return",
                       "--command",
                       QUORVANE_BIN "/quorvane-pack build --executables bin",
                       "/dev/null"};
  command.folder = project.path();
  const test::Transcript result = test::transcriptOf(command);
  result.ends(0);
  EXPECT_EQ(0u, result.out.find("\r\033[K[1/8] reading quorvane.toml\r\033[K[2/8] "));
  EXPECT_NE(std::string::npos,
            result.out.find("[8/8] writing the downloads\r\033[Koffline installer"));
}

TEST(PackBuild, ReplacesWhatItMadeAndNothingElse) {
  test::SmallProject project;
  ASSERT_TRUE(project.build().succeeded());
  project.replace("name = \"Small App\"", "name = \"Renamed\"");
  ASSERT_TRUE(project.build().succeeded());
  EXPECT_EQ(
      (std::vector<std::string>{".quorvane-output", test::downloadOf("-launcher", "Renamed"),
                                test::downloadOf("-online", "Renamed"),
                                test::downloadOf("", "Renamed"), "bundles", "index.json", "site"}),
      test::namesIn(project / "dist"));
  test::writeFile(project / "dist/mine.txt", "mine");
  project.build().fails(
      "the output folder dist contains mine.txt, which this command did not make; choose a new or "
      "empty folder with --output, or move that away");
  EXPECT_EQ("mine", test::readFile(project / "dist/mine.txt"));
}

TEST(PackBuild, LeavesAFolderAloneThatItDidNotMake) {
  const test::SmallProject project;
  test::writeFile(project / "mine/mine.txt", "mine");
  // A list of its name that it did not write makes nothing its own.
  test::writeFile(project / "listed/.quorvane-output", "mine.txt\n");
  for (const auto& [folder, name] :
       {std::pair{"mine", "mine.txt"}, {"listed", ".quorvane-output"}}) {
    project.build({"--output", folder})
        .fails(std::string("the output folder ") + folder + " contains " + name +
               ", which this command did not make; choose a new or empty folder with --output, or "
               "move that away");
    EXPECT_EQ(std::vector<std::string>{name}, test::namesIn(project / folder));
  }
}

TEST(PackBuild, IntoWhatIsNoFolderIsRefused) {
  const test::SmallProject project;
  project.build({"--output", "release.key"})
      .fails("release.key is not a folder; choose another one with --output");
  project.build({"--output", "release.key/dist"})
      .fails("the output folder release.key/dist cannot be written: Not a directory");
}

TEST(PackBuild, DoesNotTakeAListedFolderOutsideOfTheOutputForItsOwn) {
  const test::SmallProject project;
  ASSERT_TRUE(project.build().succeeded());
  const std::string list = project / "dist/.quorvane-output";
  test::writeFile(list, test::readFile(list) + "../app\n..\n/tmp\n");
  project.build().ends(0);
  EXPECT_TRUE(test::exists(project / "app/main.jar"));
}

TEST(PackBuild, ThatFailsLeavesTheEarlierResult) {
  test::SmallProject project;
  ASSERT_TRUE(project.build().succeeded());
  const std::string before = test::manifestOf(project / "dist");
  fs::remove(project / "bin/extractor");
  project.build().fails(
      "bin/extractor is missing; name the folder of launcher, extractor and lzma64 for the target "
      "system with --executables");
  EXPECT_EQ(before, test::manifestOf(project / "dist"));
}

TEST(PackBuild, GivesItsFilesTheTimeThatTheEnvironmentFixes) {
  const test::SmallProject project;
  ASSERT_TRUE(project.build({}, {{"SOURCE_DATE_EPOCH", "1000000000"}}).succeeded());
  for (const char* name : {"", "/Contents/Resources/Tail", "/Contents/MacOS/Small App"}) {
    struct stat status {};
    ASSERT_EQ(0, stat((project / kOffline + name).c_str(), &status)) << name;
    EXPECT_EQ(1000000000, status.st_mtime) << name;
  }
  project.build({}, {{"SOURCE_DATE_EPOCH", "yesterday"}})
      .fails(
          "SOURCE_DATE_EPOCH is \"yesterday\"; it is a number of seconds since the start of 1970");
}

TEST(PackBuild, TakesTheCommandLineRatherThanTheProjectFile) {
  const test::SmallProject project;
  fs::rename(project / "runtime", project / "other runtime");
  ASSERT_TRUE(project
                  .build({"--app-version", "44", "--update-url", "https://updates.example.org/",
                          "--runtime", "other runtime", "--key", test::keyFile("second")})
                  .succeeded());
  EXPECT_EQ("44\n", tailValue(project, kOffline, "app-version"));
  EXPECT_EQ("https://updates.example.org/\n", tailValue(project, kOffline, "update-url"));
  EXPECT_EQ(test::runPack("", {"key", "show", test::keyFile("second")}).out,
            tailValue(project, kOffline, "public-key"));
}

TEST(PackBuild, NamesTheOptionThatGaveAWrongValue) {
  const test::SmallProject project;
  const char* const wrong[][3] = {
      {"--app-version", "1.2",
       "is \"1.2\"; versions are compared as whole numbers, so use up to 18 digits"},
      {"--key", "nope", "names nope, which is not an existing file"},
      {"--runtime", "nope", "names nope, which is not an existing folder"},
      {"--jdk", "nope", "names nope, which is not an existing folder"},
      {"--update-url", "ftp://x",
       "is \"ftp://x\"; it must begin with http:// or https://, or be D if the property update_url "
       "gives it"}};
  for (const auto& [option, value, message] : wrong) {
    project.build({option, value}).fails(std::string(option) + " " + message);
  }
}

TEST(PackBuild, TakesTheVersionOfTheRuntimeThatTheCommandLineNames) {
  test::SmallProject project;
  project.replace("[runtime]", "[runtime]\nversion = 7");
  test::writeFile(project / "other/bin/java", "a java", 0755);
  ASSERT_TRUE(project.build({"--runtime", "other"}).succeeded());
  EXPECT_EQ("7\n", tailValue(project, kOffline, "jre-version"));
  test::writeFile(project / "other/release", "JAVA_VERSION=\"21.0.4\"\n");
  ASSERT_TRUE(project.build({"--runtime", "other"}).succeeded());
  EXPECT_EQ("210004\n", tailValue(project, kOffline, "jre-version"));
}

TEST(PackBuild, TakesTheKeyFromStandardInput) {
  const test::SmallProject project;
  for (const char* name : {"launcher", "extractor", "lzma64"}) {
    test::writeFile(project / "bin/" + name, test::standIn(name, "macos-x86_64"), 0700);
  }
  test::writeFile(project / "quorvane.toml", project.text);
  test::runShell(project.path(),
                 "quorvane-pack build --bundles --launcher-bundle --target macos-x86_64 "
                 "--executables bin --key - < release.key")
      .ends(0);
  expectTheSameBundlesAsEver(project);
}

TEST(PackBuild, WarnsOfAKeyThatOthersMayRead) {
  const test::SmallProject project;
  fs::permissions(project / "release.key", fs::perms{0644});
  project.build({"--quiet"})
      .ends(0)
      .reports("quorvane-pack: other users can read release.key; run 'chmod 600' on it\n");
}

TEST(PackBuild, WithoutSignaturesWritesNoKeyAndAsksForNone) {
  test::SmallProject project;
  project.replace("[signing]\nkey = \"release.key\"\n", "");
  project.replace("[installer]\n", "[installer]\nrequire_signature = false\n");
  ASSERT_TRUE(project.build().succeeded());
  EXPECT_EQ("\n", tailValue(project, kOffline, "public-key"));
  project
      .pack({"params", "read",
             std::string(kOffline) + "/Contents/Resources/AppParams.excludefromsigning"})
      .mentionsNo("require_signature");
}

TEST(PackBuild, GivesEachBundleItsOwnIdentifierAndTheApplicationsName) {
  const test::SmallProject project;
  ASSERT_TRUE(project.build().succeeded());
  const char* const bundles[][2] = {{"launcher", "org.example.small"},
                                    {"offline", "org.example.small.installer"},
                                    {"online", "org.example.small.online-installer"}};
  for (const auto& [bundle, identifier] : bundles) {
    const std::string plist =
        test::readFile(project / test::bundleIn("dist", bundle) + "/Contents/Info.plist");
    EXPECT_EQ(identifier, tools::plistText(plist, "CFBundleIdentifier"));
    EXPECT_EQ("Small App", tools::plistText(plist, "CFBundleDisplayName"));
    EXPECT_EQ("Small App", tools::plistText(plist, "CFBundleName"));
    EXPECT_EQ("Small App", tools::plistText(plist, "CFBundleExecutable"));
  }
}

// Executables of another system are packed as they are; nothing here runs them.
TEST(PackBuild, PacksTheExecutablesOfAnotherSystem) {
  const test::SmallProject project;
  const std::string mac = "dist/bundles/macos-arm64/offline/Small App.app";
  for (const char* name : {"launcher", "extractor", "lzma64"}) {
    test::writeFile(project / "mac" + "/" + name,
                    test::signedMachFile(test::MACH_ARM64, test::MACH_PROGRAM, name, {}), 0755);
  }
  test::writeFile(project / "quorvane.toml", project.text);
  ASSERT_TRUE(project.pack({"build", "--bundles", "--launcher-bundle", "--executables", "mac"})
                  .succeeded());
  EXPECT_EQ(test::readFile(project / "mac/launcher"),
            test::readFile(project / "dist/bundles/macos-arm64/launcher/Small App.app" +
                           "/Contents/MacOS/Small App"));
  EXPECT_EQ(test::readFile(project / "mac/extractor"),
            test::readFile(project / mac + "/Contents/MacOS/Small App"));
  EXPECT_NE(std::string::npos, test::readFile(project / mac + "/Contents/Resources/Tail")
                                   .find(test::readFile(project / "mac/lzma64")));
  project.pack({"verify", mac}).ends(0).mentions("made for macos-arm64, from macOS 11.0 on\n");
}

TEST(PackBuild, WithoutItsOwnUpdaterAsksForAnUpdater) {
  test::SmallProject project;
  project.replace("[updater]\nfolder = \"updater\"\nversion = \"5\"\n", "");
  test::writeFile(project / "quorvane.toml", project.text);
  fs::create_directories(project / "other/bin");
  fs::copy(QUORVANE_BIN "/quorvane-pack", project / "other/bin");
  test::Command command;
  command.arguments = {project / "other/bin/quorvane-pack", "build", "--quiet", "--executables",
                       "bin"};
  command.folder = project.path();
  test::transcriptOf(command).fails("the packager's own updater is not at " +
                                    project / "other/updater/updater.jar" +
                                    ": it was built without a JDK; build it with one, or name an "
                                    "updater as 'folder' and 'version' in [updater]");
}

TEST(PackBuild, OfOneJarCarriesThePackagersOwnUpdater) {
  test::SmallProject project;
  project.replace("folder = \"app\"", "jar = \"app/main.jar\"");
  project.replace("[updater]\nfolder = \"updater\"\nversion = \"5\"\n", "");
  const test::Transcript result = project.build();
  ASSERT_TRUE(result.succeeded());
  result.mentions(
      "so the online installer cannot download a runtime, and installed applications do not look "
      "for updates\n");
  project.pack({"verify", kOffline}).ends(0);
  EXPECT_EQ("2\n", tailValue(project, kOffline, "gu-version"));
}

}  // namespace
