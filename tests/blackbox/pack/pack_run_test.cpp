#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "tests/blackbox/pack/small_project.h"
#include "tests/support/background.h"
#include "tests/support/files.h"
#include "tools/objects/target.h"

// What 'quorvane-pack run' does with an installer, which is a script here.

namespace fs = std::filesystem;
using Texts = std::vector<std::string>;

namespace {

const std::string kInstaller = test::bundleIn("dist", "offline");
// What messages name.
const std::string kDownload = "dist/" + test::downloadOf();
const char kNoDisplay[] =
    "quorvane-pack: no display available: the installer shows no windows, and an application "
    "that needs one fails\n";
const char kInstall[] =
    "mkdir -p \"$HOME/Library/Application Support/Quorvane-Small App/Quorvane-Small "
    "App-3-complete\"\n";
const char kInstalled[] =
    "installed: ~/Library/Application Support/Quorvane-Small App/Quorvane-Small App-3-complete\n"
    "the installer ended with status 0; its temporary home was removed\n";

class PackRun : public testing::Test {
 protected:
  // Makes an output folder whose installers are the shell script `script`, in the bundles and in
  // the downloads.
  void build(const std::string& script) {
    ASSERT_TRUE(project_.build().succeeded());
    for (const auto& [kind, suffix] : {std::pair{"offline", ""}, {"online", "-online"}}) {
      const std::string bundle = project_ / test::bundleIn("dist", kind);
      test::writeFile(bundle + "/Contents/MacOS/Small App", "#!/bin/sh\n" + script, 0755);
      test::Command command;
      command.arguments = {"/usr/bin/bsdtar",
                           "-a",
                           "-cf",
                           project_ / "dist/" + test::downloadOf(suffix),
                           "-C",
                           fs::path(bundle).parent_path(),
                           "Small App.app"};
      ASSERT_TRUE(test::transcriptOf(command).succeeded());
    }
  }

  test::Transcript run(Texts words, const std::string& display = "") {
    words.insert(words.begin(), "run");
    test::Command command = test::packCommand(project_.path(), words);
    command.environment = {{"DISPLAY", display}};
    return test::transcriptOf(command);
  }

  static const test::Transcript& expectErrorOfRun(const test::Transcript& result,
                                                  const std::string& message,
                                                  test::Place place = test::Place::here()) {
    return result.ends(1, place).reports(kNoDisplay + ("quorvane-pack: " + message + "\n"), place);
  }

  test::SmallProject project_;
};

TEST_F(PackRun, OfAnOutputFolderRunsItsOfflineInstallerAndSaysWhatItInstalled) {
  // The online one is another file with the same script; a fake runtime is in the offline one only.
  build("grep -q runtime.p2 \"${0%/*}/../Resources/Tail\" || exit 9\n" + std::string(kInstall));
  run({}).ends(0).prints(kInstalled).reports(kNoDisplay);
}

TEST_F(PackRun, WithADisplayDoesNotSpeakOfIt) {
  build(kInstall);
  const test::OwnDisplay display;
  run({"dist"}, display.name()).prints(kInstalled).reports("");
}

TEST_F(PackRun, OfABundleRunsThatOneAlone) {
  build("echo \"$0\"\n");
  const std::string online = test::bundleIn("dist", "online");
  const test::Transcript result = run({"--verbose", online});
  result.ends(0);
  EXPECT_EQ(project_ / online + "/Contents/MacOS/Small App", test::linesOf(result.out).front());
}

TEST_F(PackRun, OfADownloadRunsWhatIsInItAndLeavesNothing) {
  build("echo \"$0\"\ngrep -c runtime.p2 \"${0%/*}/../Resources/Tail\"\nexit 0\n");
  const test::Transcript result = run({"--verbose", "dist/" + test::downloadOf("-online")});
  result.ends(0);
  const Texts lines = test::linesOf(result.out);
  EXPECT_EQ("0", lines[1]);
  EXPECT_EQ(0u, lines[0].find("/tmp/quorvane-")) << lines[0];
  EXPECT_FALSE(test::exists(lines[0]));
}

TEST_F(PackRun, OfAnOutputFolderWithoutAnInstallerForThisMachineSaysSo) {
  const std::string own = tools::targetText(tools::thisMachine());
  ASSERT_TRUE(project_.build({"--target", own == "macos-arm64" ? "linux-arm64" : "macos-arm64"})
                  .succeeded());
  run({}).fails("dist has no offline installer for this machine, " + own +
                "; build one with --target");
}

TEST_F(PackRun, PassesTheWordsBehindTheDashesOn) {
  build("for word in \"$@\"; do echo \"[$word]\"; done\n");
  const test::Transcript result =
      run({"--verbose", "dist", "--", "-silent", "two words", "--keep"});
  result.ends(0);
  EXPECT_EQ("[-silent]\n[two words]\n[--keep]\n", result.out.substr(0, result.out.find("the ")));
}

TEST_F(PackRun, WithoutAPathPassesTheWordsBehindTheDashesOn) {
  build("for word in \"$@\"; do echo \"[$word]\"; done\n");
  const test::Transcript result = run({"--verbose", "--", "A.java", "--", "-v"});
  result.ends(0);
  EXPECT_EQ("[A.java]\n[--]\n[-v]\n", result.out.substr(0, result.out.find("the ")));
}

TEST_F(PackRun, GivesTheInstallerAHomeOfItsOwnThatIsGoneAfterwards) {
  build("getent passwd \"$(id -u)\" | cut -d: -f6\necho \"$HOME\"\ntouch \"$HOME/file\"\n");
  const test::Transcript result = run({"--verbose"});
  const Texts lines = test::linesOf(result.out);
  ASSERT_EQ(3u, lines.size()) << result.out << result.err;
  EXPECT_EQ(lines[0], lines[1]);
  EXPECT_EQ(0u, lines[0].find("/tmp/quorvane-"));
  EXPECT_FALSE(test::exists(lines[0]));
}

TEST_F(PackRun, OfWhatIsNothingToRunSaysSo) {
  test::writeFile(project_ / "others/" + test::downloadOf(), "not made by the packager");
  for (const char* path : {"nowhere", "app", "others"}) {
    run({path}).fails(std::string(path) +
                      " is neither a bundle nor a folder that 'quorvane-pack build' "
                      "made; build first, or name a bundle");
  }
}

TEST_F(PackRun, OfAnOutputFolderWhoseInstallerWasTakenAwaySaysSo) {
  build(kInstall);
  fs::remove(project_ / kDownload);
  run({}).fails(kDownload + " cannot be unpacked: Failed to open '" + kDownload + "'");
}

TEST_F(PackRun, OfAFileThatIsNoDownloadSaysSo) {
  test::writeFile(project_ / "text", "no download\n");
  run({"text"}).fails("text cannot be unpacked: Unrecognized archive format");
}

TEST_F(PackRun, OfAnInstallerForAnotherSystemSaysSo) {
  ASSERT_TRUE(project_.build().succeeded());
  expectErrorOfRun(run({}), kDownload +
                                " cannot be started: Exec format error; was it built for this "
                                "system?");
}

TEST_F(PackRun, OfAnInstallerThatFailsNamesItsStatusAndTheEndOfItsLog) {
  build(
      "for i in 1 2 3 4 5 6 7 8 9 10 11 12 13; do echo \"line $i\"; done\necho noise >&2\nexit "
      "7\n");
  std::string lines;
  for (int i = 2; i <= 13; ++i) {
    lines += "\n  line " + std::to_string(i);
  }
  expectErrorOfRun(run({}), kDownload + " ended with status 7; the end of its output:" + lines +
                                "\nthe end of its standard error:\n  noise")
      .prints("");
}

// The system's log repeats the installer's on standard error.
TEST_F(PackRun, OfAnApplicationThatFailsShowsItsStandardErrorWithoutTheLog) {
  build(
      "echo '+0        [JNILauncher] About to execute static void method.'\n"
      "cat >&2 <<'END'\n"
      "2026-01-02 03:04:05.678 Small App[1:1] [JNILauncher] About to execute static void method.\n"
      "\n"
      "cannot open [the file]\n"
      "2026-01-02 is a date\n"
      "2026-01-02 03:04:05.678 Small App[1:2] \n"
      "END\nexit 3\n");
  expectErrorOfRun(run({}), kDownload +
                                " ended with status 3; the end of its output:\n"
                                "  +0        [JNILauncher] About to execute static void method.\n"
                                "the end of its standard error:\n"
                                "  cannot open [the file]\n"
                                "  2026-01-02 is a date");
}

TEST_F(PackRun, OfAnInstallerThatOnlyComplainsShowsTheComplaint) {
  build("echo 'a library is missing' >&2\nexit 127\n");
  expectErrorOfRun(run({}), kDownload +
                                " ended with status 127; the end of its standard error:\n"
                                "  a library is missing");
}

TEST_F(PackRun, OfAnInstallerThatFailsInSilenceSaysSo) {
  build("exit 1\n");
  expectErrorOfRun(run({}), kDownload + " ended with status 1; it printed nothing");
}

TEST_F(PackRun, OfAnInstallerThatASignalEndsNamesTheSignal) {
  build("echo started\nkill -9 $$\n");
  expectErrorOfRun(run({}),
                   kDownload + " was killed by signal 9; the end of its output:\n  started");
}

TEST_F(PackRun, OfAFailingInstallerWhoseOutputWasShownDoesNotRepeatIt) {
  build("echo started\nexit 3\n");
  expectErrorOfRun(run({"--verbose"}), kDownload + " ended with status 3").prints("started\n");
}

// The installer ends with 0 whatever exception ends the application.
TEST_F(PackRun, OfAnApplicationThatAnExceptionEndsShowsItWithoutItsStack) {
  build(
      "cat >&2 <<'END'\n"
      "2026-01-02 03:04:05.678 Small App[1:1] About to execute static void method.\n"
      "Exception in thread \"main\" java.lang.reflect.InvocationTargetException\n"
      "\tat java.desktop/java.awt.EventQueue.invokeAndWait(Unknown Source)\n"
      "\t... 3 more\n"
      "Caused by: java.awt.HeadlessException: \n"
      "No X11 DISPLAY variable was set\n"
      "\tat java.desktop/java.awt.Frame.<init>(Unknown Source)\n"
      "2026-01-02 03:04:05.678 Small App[1:1] Destroying runtime.\n"
      "END\n");
  expectErrorOfRun(
      run({}), kDownload +
                   " ended with status 0 and its application with an exception:\n"
                   "  Exception in thread \"main\" java.lang.reflect.InvocationTargetException\n"
                   "  Caused by: java.awt.HeadlessException: \n"
                   "  No X11 DISPLAY variable was set")
      .prints("");
}

TEST_F(PackRun, OfAnApplicationWithAnExceptionInAnotherThreadTellsOfIt) {
  build(std::string(kInstall) +
        "cat >&2 <<'END'\n"
        "Exception in thread \"AWT-EventQueue-0\" java.lang.IllegalStateException: no window\n"
        "\tat Hello.main(Hello.java:3)\n"
        "END\n");
  run({})
      .ends(0)
      .prints(kInstalled)
      .reports(std::string(kNoDisplay) +
               "quorvane-pack: the application threw an exception:\n"
               "  Exception in thread \"AWT-EventQueue-0\" java.lang.IllegalStateException: no "
               "window\n");
}

TEST_F(PackRun, KeepsTheHomeInANewFolder) {
  build(std::string(kInstall) + "ln -s nowhere \"$HOME/link\"\n");
  run({"--keep", "kept"}).ends(0).prints(std::string("kept: kept\n") + kInstalled);
  EXPECT_EQ((Texts{"Library", "link"}), test::namesIn(project_ / "kept"));
  EXPECT_TRUE(fs::is_symlink(project_ / "kept/link"));
}

TEST_F(PackRun, KeepsTheHomeOfARunThatFails) {
  build(std::string(kInstall) + "exit 5\n");
  expectErrorOfRun(run({"--keep", "kept"}), kDownload + " ended with status 5; it printed nothing")
      .prints("kept: kept\n");
  EXPECT_EQ(Texts{"Library"}, test::namesIn(project_ / "kept"));
}

TEST_F(PackRun, SaysSoWhereTheHomeCannotBeKept) {
  const std::string kept = project_ / "kept";
  build("rmdir '" + kept + "' && touch '" + kept + "'\n");
  expectErrorOfRun(run({"--keep", "kept"}), "the home cannot be copied to kept: Is a directory")
      .prints("");
}

TEST_F(PackRun, KeepsNothingWhereSomethingStandsAndDoesNotRun) {
  build("touch '" + project_ / "ran" + "'\n");
  test::writeFile(project_ / "folder/mine", "mine");
  fs::create_symlink("nowhere", project_ / "link");
  for (const char* name : {"folder", "quorvane.toml", "link"}) {
    run({"--keep", name}).fails(std::string(name) + " exists; name a new folder with --keep");
  }
  run({"--keep", "no/folder"})
      .fails("cannot create the folder no/folder: No such file or directory");
  EXPECT_EQ(Texts{"mine"}, test::namesIn(project_ / "folder"));
  EXPECT_FALSE(test::exists(project_ / "ran"));
}

}  // namespace
