#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <string>
#include <vector>

#include "tests/unit/launch/launching.h"

using Texts = std::vector<std::string>;

using LaunchExecutable = Launching;

TEST_F(LaunchExecutable, IsACopyOfJavaUnderTheApplicationsName) {
  scene.installFakeRuntime(scene.runtime());
  const Launched launched = launch();
  const std::string copy = scene.runtime() + "/bin/Sample";
  EXPECT_EQ(test::readFile(test::fakeJava()), test::readFile(copy));
  EXPECT_EQ(0777u, test::modeOf(copy));
  EXPECT_EQ(copy, startedWith()[0]);
  EXPECT_TRUE(test::containsInOrder(
      launched.lines,
      {"[Extractor] Using private JRE Quorvane-Mac64JRE-1407-complete",
       "[Extractor] Copying FILE " + copy, "[Extractor] JRE LSO file is " + scene.optionsFile()}));
}

TEST_F(LaunchExecutable, ThatExistsIsNotCopiedAgain) {
  scene.installFakeRuntime(scene.runtime());
  const std::string copy = scene.runtime() + "/bin/Sample";
  test::writeFile(copy, test::readFile(test::fakeJava()), 0755);
  const Launched launched = launch();
  EXPECT_EQ(0755u, test::modeOf(copy));
  EXPECT_EQ(copy, startedWith()[0]);
  EXPECT_TRUE(test::containsInOrder(launched.lines, {"File exists: " + copy}));
}

TEST_F(LaunchExecutable, ThatCannotBeExecutedIsMadeAnew) {
  scene.installFakeRuntime(scene.runtime());
  const std::string copy = scene.runtime() + "/bin/Sample";
  test::writeFile(copy, "half", 0644);
  launch();
  EXPECT_EQ(test::readFile(test::fakeJava()), test::readFile(copy));
  EXPECT_EQ(0777u, test::modeOf(copy));
  EXPECT_EQ(copy, startedWith()[0]);
}

TEST_F(LaunchExecutable, AtWhichALinkLeadsOutIsMadeInItsPlace) {
  scene.installFakeRuntime(scene.runtime());
  const std::string copy = scene.runtime() + "/bin/Sample";
  const std::string victim = scene.runtime() + "/victim";
  test::writeFile(victim, "mine", 0600);
  std::filesystem::create_symlink(victim, copy);
  launch();
  EXPECT_EQ("mine", test::readFile(victim));
  EXPECT_EQ(0600u, test::modeOf(victim));
  EXPECT_FALSE(std::filesystem::is_symlink(copy));
  EXPECT_EQ(copy, startedWith()[0]);
}

TEST_F(LaunchExecutable, ThatCouldNotBeCopiedWholeLeavesNoPartAndStartsJava) {
  scene.installFakeRuntime(scene.runtime());
  const std::string copy = scene.runtime() + "/bin/Sample";
  std::filesystem::create_directories(copy + ".part/in the way");
  const Launched launched = launch();
  EXPECT_TRUE(hasError(launched.lines, "Error setting app binary executable!"));
  EXPECT_FALSE(test::exists(copy));
  EXPECT_EQ(scene.runtime() + "/bin/java", startedWith()[0]);
}

TEST_F(LaunchExecutable, WithBlanksAndLettersBeyondAsciiInItsNameIsStarted) {
  scene.launchFile.appName = "Größe von 漢字 \"x\"";
  scene.installFakeRuntime(scene.runtime());
  EXPECT_EQ(0, launch().result);
  EXPECT_EQ(scene.runtime() + "/bin/Größe von 漢字 \"x\"", startedWith()[0]);
}

TEST_F(LaunchExecutable, ThatCannotBeMadeIsLoggedAndTheLaunchGoesOn) {
  test::writeFile(scene.runtime() + "/release", "");
  const Launched launched = launch();
  EXPECT_TRUE(launched.returned);
  EXPECT_EQ(ENOENT, launched.result);
  EXPECT_TRUE(hasError(launched.lines, "Error setting app binary executable!"));
  EXPECT_TRUE(hasError(launched.lines, "Launch Error 2."));
  EXPECT_EQ(1u, scene.propertiesFiles().size());
}

// The tool refuses such a name, so it is put into the bytes behind its back.
TEST_F(LaunchExecutable, WhoseNameLeadsOutOfTheFolderIsJavaItself) {
  scene.launchFile.appName = "XXXSample";
  std::string bytes = tools::encodeLaunchFile(scene.launchFile);
  bytes.replace(bytes.find("XXX"), 3, "../");
  test::writeFile(scene.appFolder() + "/QuorvaneLaunch", bytes);
  scene.installFakeRuntime(scene.runtime());
  const Launched launched = launchAsItIs();
  EXPECT_EQ(0, launched.result);
  EXPECT_EQ(scene.runtime() + "/bin/java", startedWith()[0]);
  EXPECT_TRUE(hasError(launched.lines, "Error setting app binary executable!"));
  EXPECT_EQ((Texts{"bin"}), test::namesIn(scene.runtime()));
}

TEST_F(LaunchExecutable, WithoutAPrivateRuntimeEndsTheProcessWithStatusOne) {
  const Launched launched = launch();
  EXPECT_FALSE(launched.returned);
  EXPECT_EQ(1, launched.result);
  EXPECT_EQ((Texts{"No private JRE available!"}), errorsIn(launched.lines));
  EXPECT_TRUE(scene.propertiesFiles().empty());
}

TEST_F(LaunchExecutable, ComesFromTheNewestCompleteRuntime) {
  scene.installFakeRuntime(scene.runtime());
  scene.installFakeRuntime(scene.master() + "/Quorvane-Mac64JRE-99-complete");
  scene.installFakeRuntime(scene.master() + "/Quorvane-Mac64JRE-1500");
  scene.installFakeRuntime(scene.master() + "/Quorvane-OtherJRE-2000-complete");
  launch();
  EXPECT_EQ(scene.runtime() + "/bin/Sample", startedWith()[0]);
}

TEST_F(LaunchExecutable, ComesFromThePlainRuntimeFolderBesideItsBundle) {
  scene.installFakeRuntime(scene.runtime() + ".plugin");
  scene.installFakeRuntime(scene.runtime());
  launch();
  EXPECT_EQ(scene.runtime() + "/bin/Sample", startedWith()[0]);
}

TEST_F(LaunchExecutable, ComesFromTheRuntimesBundleWhereThatStandsAlone) {
  scene.installFakeRuntime(scene.runtime() + ".plugin");
  test::writeFile(scene.optionsFile() + ".plugin", tools::encodeOptionsFile({"-Dlast=1"}));
  launch();
  EXPECT_EQ(scene.runtime() + ".plugin/bin/Sample", startedWith()[0]);
  EXPECT_EQ("1", test::propertyIn(written(), "qvstat_jvm_options_count"));
}
