// What ends the launcher before it needs a window system. These run without a display.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "tests/support/files.h"
#include "tests/support/launcher_bundle.h"
#include "tests/support/product_system.h"

namespace fs = std::filesystem;
using test::containsInOrder;
using test::LauncherBundle;
using test::messagesOf;
using test::Tail;
using Texts = std::vector<std::string>;

static bool holds(const Texts& messages, const std::string& wanted) {
  return std::find(messages.begin(), messages.end(), wanted) != messages.end();
}

static std::string lastOf(const Texts& texts) {
  return texts.empty() ? "" : texts.back();
}

static Texts tailMessages(const std::string& updateUrl) {
  return {"[Launcher] App Name = Demo",
          "[Launcher] App Version = ",
          "[Launcher] JRE Version = ",
          "[Launcher] GU Version = ",
          "[Launcher] Min Splash MS = 0",
          "[Launcher] Signature Public Key = ",
          "[Launcher] Can Override Splash = 0",
          "[Launcher] Install Type = perm_user",
          "[Launcher] Silent Parameter = -silent",
          "[Launcher] Update URL = " + updateUrl};
}

TEST(LauncherWithoutTail, NamesTheResourcesTailAndEndsWithFailure) {
  const LauncherBundle bundle;
  const test::Result result = bundle.runWithoutDisplay({"guest.Program"});
  EXPECT_EQ(1, result.status);
  const std::string folder = fs::path(bundle.executable()).parent_path();
  const std::string tail = folder + "/../Resources/Tail";
  EXPECT_EQ((Texts{"----- Starting Launcher -----", "[Launcher]\t Arg[0]=" + bundle.executable(),
                   "[Launcher]\t Arg[1]=guest.Program", "Could not find marker: Tail",
                   "[Extractor] The absolute wrapper path is " + bundle.executable(),
                   "[Extractor] The executable name is " + bundle.executable(),
                   "[Launcher] The executable dir is " + folder,
                   "[Launcher] No tail found. Trying " + tail,
                   "[Launcher] ************************* Failed to extract wrapper tail - couldn't "
                   "open file " +
                       tail}),
            messagesOf(result.out));
  EXPECT_EQ(Texts{}, test::namesIn(bundle.home.path()));
}

TEST(LauncherWithoutTail, TakesALinkThatLeadsNowhereForNoTail) {
  const LauncherBundle bundle;
  fs::create_symlink("nowhere", bundle.resources() + "/Tail");
  const test::Result result = bundle.runWithoutDisplay({"guest.Program"});
  EXPECT_EQ(1, result.status);
  EXPECT_NE(std::string::npos, result.out.find("Failed to extract wrapper tail"));
}

TEST(LauncherWithUnreadableTail, ReadsEveryFieldAsEmptyAndFindsNoRuntime) {
  const LauncherBundle bundle;
  fs::create_directory(bundle.resources() + "/Tail");
  const test::Result result = bundle.runWithoutDisplay({"guest.Program"});
  EXPECT_EQ(1, result.status);
  const std::string master = bundle.home.applicationSupport() + "/Quorvane-";
  EXPECT_TRUE(containsInOrder(
      messagesOf(result.out),
      {"[Launcher] App Name = ", "[Launcher] Install Type = ", "Temporary install",
       "[Launcher] Master folder is " + master,
       "[Launcher] *************************** No complete JRE folder for Mac64JRE in " + master}));
}

TEST(LauncherWithUnreadableExecutable, NamesItAsItWasStartedAndEndsWithFailure) {
  const LauncherBundle bundle;
  test::Command command;
  command.arguments = {"/bin/bash", "-c", "exec -a no/such/file \"$0\" -v", bundle.executable()};
  command.environment = bundle.home.environment();
  const test::Result result = test::run(command);
  EXPECT_EQ(1, result.status);
  EXPECT_EQ((Texts{"----- Starting Launcher -----", "[Launcher]\t Arg[0]=no/such/file",
                   "[Launcher]\t Arg[1]=-v",
                   "Failed to extract wrapper tail - couldn't open file no/such/file"}),
            messagesOf(result.out));
}

TEST(LauncherWithoutJre, LogsTheWholeWayAndEndsWithFailure) {
  const LauncherBundle bundle;
  Tail tail;
  tail.requiredJavaVersion = "17";
  bundle.appendTail(tail);
  const test::Result result = bundle.runWithoutDisplay({});
  EXPECT_EQ(1, result.status);
  Texts wanted = {"----- Starting Launcher -----", "[Launcher]\t Arg[0]=" + bundle.executable(),
                  "[Launcher] Found tail marker"};
  const Texts values = tailMessages("17");
  wanted.insert(wanted.end(), values.begin(), values.end());
  const Texts rest = {
      "Permanent install for current user",
      "HomeDir is " + bundle.home.path(),
      "[Launcher] Created " + bundle.home.path() + "/Library",
      "[ChMod] Executing chmod 777 \"" + bundle.home.applicationSupport() + "\"",
      "[Launcher] Master folder is " + bundle.master(),
      "No JRE name override!",
      "[Launcher] JRE name is is Mac64JRE",
      "[Launcher] *************************** No complete JRE folder for Mac64JRE in " +
          bundle.master()};
  wanted.insert(wanted.end(), rest.begin(), rest.end());
  EXPECT_EQ(wanted, messagesOf(result.out));
}

TEST(LauncherWithoutJre, CreatesTheSharedDirectoryButNoMasterFolder) {
  const LauncherBundle bundle;
  bundle.writeTailFile(Tail());
  bundle.runWithoutDisplay({"guest.Program"});
  EXPECT_EQ((Texts{"Library"}), test::namesIn(bundle.home.path()));
  EXPECT_EQ(Texts{}, test::namesIn(bundle.home.applicationSupport()));
}

TEST(LauncherWithoutJre, PassesOverAnExtractionThatIsNotComplete) {
  const LauncherBundle bundle;
  bundle.writeTailFile(Tail());
  bundle.installed.addFolders({"Quorvane-Mac64JRE-1600"});
  const test::Result result = bundle.runWithoutDisplay({"guest.Program"});
  EXPECT_EQ(1, result.status);
  EXPECT_TRUE(containsInOrder(
      messagesOf(result.out),
      {"[PickFolder] Folder Quorvane-Mac64JRE-1600 matches Mac64JRE with version -1",
       "[Launcher] *************************** No complete JRE folder for Mac64JRE in " +
           bundle.master()}));
}

TEST(LauncherWithoutJre, LooksForTheNameThatTheOverrideGives) {
  const LauncherBundle bundle;
  bundle.writeTailFile(Tail());
  bundle.installRuntime();
  bundle.installed.setRuntimeName("Mac64JRE2");
  const test::Result result = bundle.runWithoutDisplay({"guest.Program"});
  EXPECT_EQ(1, result.status);
  EXPECT_TRUE(containsInOrder(
      messagesOf(result.out),
      {"JRE name overridden to Mac64JRE2", "[Launcher] JRE name is is Mac64JRE2",
       "[Launcher] *************************** No complete JRE folder for Mac64JRE2 in " +
           bundle.master()}));
}

TEST(LauncherForAllUsers, LooksInTheSystemsFolderAndLeavesTheHomeAlone) {
  const LauncherBundle bundle;
  Tail tail;
  tail.appName = "No Such Application";
  tail.installType = "perm_all";
  bundle.writeTailFile(tail);
  const test::Result result = bundle.runWithoutDisplay({"guest.Program"});
  EXPECT_EQ(1, result.status);
  EXPECT_TRUE(containsInOrder(
      messagesOf(result.out),
      {"Permanent install for all users",
       "[Launcher] Master folder is /Library/Application Support/Quorvane-No Such Application"}));
  EXPECT_EQ(Texts{}, test::namesIn(bundle.home.path()));
}

TEST(LauncherWithAnApplicationNameThatFillsItsField, FindsNoRuntimeAndEndsWithFailure) {
  const LauncherBundle bundle;
  Tail tail;
  tail.appName = std::string(1022, 'n');
  bundle.writeTailFile(tail);
  const test::Result result = bundle.runWithoutDisplay({"guest.Program"});
  EXPECT_EQ(1, result.status);
  EXPECT_TRUE(
      holds(messagesOf(result.out), "[Launcher] App Name = " + std::string(99, 'n') + "..."));
}

TEST(LauncherWithoutDisplay, SaysSoInOneLineOnStandardErrorAndEndsWithFailure) {
  const LauncherBundle bundle;
  bundle.writeTailFile(Tail());
  bundle.installRuntime();
  const test::Result result = bundle.runWithoutDisplay({"guest.Program"});
  EXPECT_EQ(1, result.status);
  EXPECT_EQ(0, result.signal);
  EXPECT_EQ("[Launcher] About to create NSApplication", lastOf(messagesOf(result.out)));
  EXPECT_EQ(test::productMissingDisplay(), lastOf(test::linesOf(result.err)));
}

TEST(LauncherWithADisplayThatNobodyServes, SaysSoInOneLineOnStandardErrorAndEndsWithFailure) {
  const LauncherBundle bundle;
  bundle.writeTailFile(Tail());
  bundle.installRuntime();
  const test::Result result = bundle.run({"guest.Program"}, {{"DISPLAY", ":59998"}});
  EXPECT_EQ(1, result.status);
  EXPECT_EQ(test::productMissingDisplay(), lastOf(test::linesOf(result.err)));
}
