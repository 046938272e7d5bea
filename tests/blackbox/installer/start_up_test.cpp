// From the invocation to the first decision, through the real executable.

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "tests/blackbox/installer/current_installation.h"
#include "tests/support/launch_scene.h"

namespace fs = std::filesystem;
using test::Installer;
using test::ParamsPlace;
using test::TailPlace;

namespace {

using StartUp = CurrentInstallation;

const char kNoParams[] =
    "[Extractor] *********************** Failed to extract wrapper params - couldn't open params "
    "file";

}  // namespace

TEST_F(StartUp, OnlyTheFirstParamsFileIsReadWhenBothStand) {
  installer_.paramsPlace = ParamsPlace::Both;
  installer_.properties = {{"where", "first"}};
  installer_.write();
  test::writeFile(installer_.resources() + "/params.lproj/locversion.plist", "no marker in here");
  const test::Result result = installer_.run();
  EXPECT_EQ(0, result.status);
  EXPECT_TRUE(logs(result, "[DynProps] Dynamic Param 0: where=[first]"));
}

TEST_F(StartUp, ParamsInTheSecondPlaceAreRead) {
  installer_.paramsPlace = ParamsPlace::LocVersion;
  installer_.properties = {{"where", "second"}};
  const test::Result result = run();
  EXPECT_EQ(0, result.status);
  EXPECT_TRUE(logs(result, "[DynProps] Dynamic Param 0: where=[second]"));
}

TEST_F(StartUp, LinkThatLeadsNowhereInTheFirstParamsPlaceIsPassedOver) {
  installer_.paramsPlace = ParamsPlace::LocVersion;
  installer_.properties = {{"where", "second"}};
  installer_.write();
  fs::create_symlink("nowhere", installer_.params());
  const test::Result result = installer_.run();
  EXPECT_EQ(0, result.status);
  EXPECT_TRUE(logs(result, "[DynProps] Dynamic Param 0: where=[second]"));
}

TEST_F(StartUp, ParamsThatCannotBeOpenedInTheFirstPlaceAreReadInTheSecondAfterALine) {
  installer_.paramsPlace = ParamsPlace::LocVersion;
  installer_.properties = {{"where", "second"}};
  installer_.write();
  test::makeUnopenable(installer_.params());
  const test::Result result = installer_.run();
  EXPECT_EQ(0, result.status);
  EXPECT_TRUE(logs(result, "[DynProps] Dynamic Param 0: where=[second]"));
  EXPECT_TRUE(mentions(result, "[Extractor] Unable to open params file "));
}

TEST_F(StartUp, ParamsThatCannotBeOpenedAnywhereEndWithStatus1) {
  installer_.paramsPlace = ParamsPlace::None;
  installer_.write();
  test::makeUnopenable(installer_.params());
  test::makeUnopenable(installer_.resources() + "/params.lproj/locversion.plist");
  const test::Result result = installer_.run();
  EXPECT_EQ(1, result.status);
  EXPECT_TRUE(logs(result, kNoParams));
}

TEST_F(StartUp, WithoutParamsEndsWithStatus1) {
  installer_.paramsPlace = ParamsPlace::None;
  const test::Result result = run();
  EXPECT_EQ(1, result.status);
  EXPECT_TRUE(logs(result, kNoParams));
}

TEST_F(StartUp, WithoutAParamsMarkerEndsWithStatus1) {
  installer_.write();
  test::writeFile(installer_.params(), std::string(1000, 'x'));
  const test::Result result = installer_.run();
  EXPECT_EQ(1, result.status);
  EXPECT_TRUE(logs(result, "Could not find marker: Params"));
}

TEST_F(StartUp, ParamsCountZeroLeavesSilenceToTheArguments) {
  installer_.properties = {};
  EXPECT_TRUE(logs(run(), "[Extractor] Is silent install is 0"));
  EXPECT_TRUE(logs(run({"-silent"}), "[Extractor] Is silent install is 1"));
}

TEST_F(StartUp, NegativeParamsCountReadsNothing) {
  installer_.paramsCount = "-1";
  installer_.properties = {{"show_no_ui", "true"}};
  const test::Result result = run();
  EXPECT_EQ(0, result.status);
  EXPECT_TRUE(logs(result, "+++ Processing -1 dynamic properties"));
  EXPECT_TRUE(logs(result, "[Extractor] Is silent install is 0"));
}

TEST_F(StartUp, ShowNoUiMakesTheRunSilentWithoutAnArgument) {
  installer_.properties = {{"show_no_ui", "true"}};
  EXPECT_TRUE(logs(run(), "[Extractor] Is silent install is 1"));
  EXPECT_EQ("true", property("qvstat_show_no_ui"));
}

TEST_F(StartUp, SilentParameterThatMatchesTheProgramsPathMakesTheRunSilent) {
  installer_.tail.silentParameter = installer_.executable();
  EXPECT_TRUE(logs(run(), "[Extractor] Is silent install is 1"));
}

TEST_F(StartUp, UnknownPropertyReachesTheUpdater) {
  installer_.properties = {{"colour", "blue"}, {"empty", ""}};
  EXPECT_EQ(0, run().status);
  EXPECT_EQ("blue", property("qvdyna_colour"));
  EXPECT_EQ("\x04", property("qvdyna_empty"));
}

TEST_F(StartUp, StaticPropertiesReachTheUpdater) {
  installer_.tail.requiredJavaVersion = "8";
  installer_.tail.minSplashMs = "1500";
  EXPECT_EQ(0, run().status);
  EXPECT_EQ("perm_user", property("qvstat_install_type"));
  EXPECT_EQ("1500", property("qvstat_min_splash_ms"));
  EXPECT_EQ("Demo", property("qvstat_app_name"));
  EXPECT_EQ("3", property("qvstat_wrapper_app_version"));
  EXPECT_EQ("5", property("qvstat_wrapper_gu_version"));
  EXPECT_EQ("-silent", property("qvstat_silent_parameter"));
  EXPECT_EQ("8", property("qvstat_java_version"));
  EXPECT_EQ(installer_.executable(), property("qvstat_launched_from_dynprops"));
}

TEST_F(StartUp, ForceSpawnStartsTheJavaExecutable) {
  installer_.properties = {{"force_spawn", "true"}};
  const test::Result result = run();
  EXPECT_EQ(0, result.status);
  EXPECT_TRUE(mentions(result, "[Extractor] Attempting spawn launch\n"));
  EXPECT_FALSE(installer_.launched());
}

TEST_F(StartUp, StaticUpdateUrlGainsItsSlashInTheLog) {
  installer_.tail.updateUrl = "http://127.0.0.1/u";
  const test::Result result = run();
  EXPECT_TRUE(test::containsInOrder(test::logLinesOf(result.out),
                                    {"[Extractor] Will use Static Update URL: http://127.0.0.1/u",
                                     "[Extractor] Update URL is currently 'http://127.0.0.1/u'",
                                     "[Extractor] Update URL is now 'http://127.0.0.1/u/'"}));
}

TEST_F(StartUp, DynamicUpdateUrlIsTakenWhenTheTailSaysD) {
  installer_.tail.updateUrl = "D";
  installer_.properties = {{"update_url", "http://127.0.0.1/dynamic/"}};
  const test::Result result = run();
  EXPECT_TRUE(logs(result, "[Extractor] Will use Dynamic Update URL: http://127.0.0.1/dynamic/"));
  EXPECT_EQ("D", property("qvstat_update_url"));
  EXPECT_EQ("http://127.0.0.1/dynamic/", property("qvdyna_update_url"));
}

TEST_F(StartUp, MissingDynamicUpdateUrlIsTheEmptyText) {
  installer_.tail.updateUrl = "D";
  const test::Result result = run();
  EXPECT_EQ(0, result.status);
  EXPECT_TRUE(logs(result, "[Extractor] Update URL is now ''"));
  EXPECT_EQ("(none)", property("qvdyna_update_url"));
}

TEST_F(StartUp, TailBehindTheExecutableIsFound) {
  installer_.tailPlace = TailPlace::Executable;
  const test::Result result = run();
  EXPECT_EQ(0, result.status);
  EXPECT_TRUE(logs(result, "[Extractor] Found tail marker"));
  EXPECT_TRUE(installer_.launched());
}

TEST_F(StartUp, WithoutATailEndsWithStatus1AndNamesTheFile) {
  installer_.tailPlace = TailPlace::None;
  const test::Result result = run();
  EXPECT_EQ(1, result.status);
  EXPECT_TRUE(mentions(result,
                       "[Extractor] ************************* Failed to extract wrapper tail - "
                       "couldn't open file "));
}

TEST_F(StartUp, JreOverrideFileWithADashKeepsTheParamsName) {
  installer_.properties = {{"jre_name", "OurJRE"}};
  installer_.installed.setRuntimeName("-");
  installer_.write();
  const test::Result result = installer_.run();
  EXPECT_TRUE(logs(result, "[JREOverride] Ignoring JRE name -, keeping OurJRE"));
}

TEST_F(StartUp, JreOverrideFileReplacesTheName) {
  installer_.installed.setRuntimeName("Theirs");
  const test::Result result = run();
  EXPECT_TRUE(logs(result, "[JREOverride] JRE name overriden to Theirs"));
}

TEST_F(StartUp, EmptyJreOverrideFileGivesAnEmptyName) {
  installer_.installed.addFile("QVApps/JreNameOverride");
  const test::Result result = run();
  EXPECT_TRUE(mentions(result, "[JREOverride] JRE name overriden to \n"));
}

TEST_F(StartUp, JreOverrideThatIsAFolderGivesAnEmptyName) {
  fs::create_directories(installer_.master("QVApps/JreNameOverride"));
  const test::Result result = run();
  EXPECT_TRUE(mentions(result, "[JREOverride] JRE name overriden to \n"));
}

TEST_F(StartUp, JreOverrideThatIsALinkToItselfIsNamedInALineAndTheDefaultNameStays) {
  const std::string path = installer_.master("QVApps/JreNameOverride");
  fs::create_directories(installer_.master("QVApps"));
  fs::create_symlink(path, path);
  const test::Result result = run();
  EXPECT_EQ(0, result.status);
  EXPECT_TRUE(mentions(result, "[JREOverride] The JRE name override "));
  EXPECT_TRUE(logs(result, "[JREOverride] No JRE name override, will continue to use Mac64JRE"));
}

TEST_F(StartUp, JreOverrideOfWhichNobodyKnowsWhatItSaysEndsWithStatus1AndALine) {
  test::makeUnopenable(installer_.master("QVApps/JreNameOverride"));
  const test::Result result = run();
  EXPECT_EQ(1, result.status);
  EXPECT_TRUE(mentions(result, "[JREOverride] Unable to open the JRE name override "));
}

TEST_F(StartUp, JreOverrideThatCannotBeReadEndsWithStatus1AndALine) {
  fs::create_directories(installer_.master("QVApps"));
  // It can be opened, and its first byte cannot be read.
  fs::create_symlink("/proc/self/mem", installer_.master("QVApps/JreNameOverride"));
  const test::Result result = run();
  EXPECT_EQ(1, result.status);
  EXPECT_TRUE(mentions(result, "[JREOverride] Unable to read the JRE name override "));
}

TEST_F(StartUp, WithoutAJreOverrideFileTheDefaultNameStays) {
  EXPECT_TRUE(logs(run(), "[JREOverride] No JRE name override, will continue to use Mac64JRE"));
}

TEST_F(StartUp, LogFileStandsInTheMasterFolderAndHoldsTheDecision) {
  EXPECT_EQ(0, run().status);
  const auto logs = test::namesIn(installer_.master("logs"));
  ASSERT_EQ(1u, logs.size());
  const std::string text = test::readFile(installer_.master("logs/" + logs[0]));
  EXPECT_NE(std::string::npos, text.find("[Extractor] Checking for a latest valid GU\n"));
}

TEST_F(StartUp, SharedConfigFolderIsCreated) {
  run();
  EXPECT_TRUE(fs::is_directory(installer_.master("QVAppsSharedConfig")));
}

TEST_F(StartUp, ApplicationNameThatLeavesTheSharedFolderIsRefused) {
  installer_.tail.appName = "x/../../../elsewhere";
  EXPECT_EQ(1, run().status);
}

TEST_F(StartUp, RequiredSignatureWithoutAKeyEndsWithStatus1BeforeAnythingHappens) {
  installer_.properties = {{"require_signature", "true"}};
  const test::Result result = run();
  EXPECT_EQ(1, result.status);
  EXPECT_TRUE(
      logs(result, "[Extractor] Signatures are required, but there is no usable public key"));
  EXPECT_FALSE(installer_.launched());
}

TEST_F(StartUp, RequiredSignatureWithADamagedKeyEndsWithStatus1) {
  installer_.properties = {{"require_signature", "true"}};
  installer_.tail.publicKey = "30820122deadbeef";
  EXPECT_EQ(1, run().status);
}

TEST_F(StartUp, ElevatedRunThatFindsAllCurrentEndsWithoutALaunch) {
  installer_.write();
  const test::Result result = installer_.run({"--elevated"});
  EXPECT_EQ(0, result.status);
  EXPECT_TRUE(test::containsInOrder(
      test::logLinesOf(result.out),
      {"[Extractor] This is an elevated run purely to prepare an installation. Will not show UI or "
       "launch an app",
       "[Extractor] Running without extraction now"}));
  EXPECT_FALSE(installer_.launched());
}

TEST_F(StartUp, ArgumentsAreHandedToTheUpdater) {
  installer_.write();
  installer_.run({"first word", "--elevated"});
  const std::string report = test::readFile(installer_.jvmReport());
  EXPECT_NE(std::string::npos, report.find("first word"));
  EXPECT_NE(std::string::npos, report.find("--elevated"));
}
