// The properties of the params file and the update URL, through the real executable.

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "tests/blackbox/installer/current_installation.h"

namespace fs = std::filesystem;

namespace {

using Properties = CurrentInstallation;

}  // namespace

TEST_F(Properties, ShowNoUiInCapitalsIsNoSilence) {
  installer_.properties = {{"show_no_ui", "TRUE"}};
  EXPECT_TRUE(logs(run(), "[Extractor] Is silent install is 0"));
  EXPECT_EQ("TRUE", property("qvdyna_show_no_ui"));
  EXPECT_EQ("(none)", property("qvstat_show_no_ui"));
}

TEST_F(Properties, ForceSpawnWithAnyOtherValueStaysInThisProcess) {
  installer_.properties = {{"force_spawn", "true"}, {"force_spawn", "yes"}};
  const test::Result result = run();
  EXPECT_EQ(0, result.status);
  EXPECT_FALSE(mentions(result, "[Extractor] Attempting spawn launch\n"));
  EXPECT_TRUE(installer_.launched());
}

TEST_F(Properties, SplashBufferReachesTheUpdaterEmptyOrNot) {
  installer_.properties = {{"splash_buffer", "20"}};
  EXPECT_EQ(0, run().status);
  EXPECT_EQ("20", property("qvdyna_splash_buffer"));
  installer_.properties = {{"splash_buffer", ""}};
  EXPECT_EQ(0, run().status);
}

TEST_F(Properties, SplashImageThatIsNoBase64IsLoggedAndTheRunGoesOn) {
  installer_.properties = {{"splash_image", "%%%"}};
  const test::Result result = run();
  EXPECT_EQ(0, result.status);
  EXPECT_TRUE(
      test::containsInOrder(test::logLinesOf(result.out),
                            {"[DynProps] Splash Image is %%%",
                             "[DynProps] Base64 decoding image...", "[DynProps] Decode complete"}));
  EXPECT_TRUE(installer_.launched());
}

TEST_F(Properties, LongValueReachesTheUpdaterWholeThoughTheLogDoesNotShowIt) {
  const std::string value(5000, 'v');
  installer_.properties = {{"long", value}};
  const test::Result result = run();
  EXPECT_EQ(0, result.status);
  EXPECT_TRUE(logs(result, "[DynProps] Dynamic Param 0: long=[...]"));
  EXPECT_EQ(value, property("qvdyna_long"));
}

TEST_F(Properties, ThatDoNotFitTheirBufferEndTheRun) {
  installer_.properties = {{"a", std::string(199990, 'v')}, {"b", "more"}};
  const test::Result result = run();
  EXPECT_EQ(1, result.status);
  EXPECT_FALSE(installer_.launched());
}

TEST_F(Properties, ThatLeaveNoRoomForTheInstallersOwnEndTheRun) {
  installer_.properties = {{"a", std::string(199500, 'v')}};
  installer_.tail.silentParameter = std::string(1000, 's');
  const test::Result result = run();
  EXPECT_EQ(1, result.status);
  EXPECT_TRUE(
      mentions(result, "The launch properties do not fit their 200000 bytes: silent_parameter\n"));
  EXPECT_FALSE(installer_.launched());
}

TEST_F(Properties, CountBeyondTheFileEndsWithTheFile) {
  installer_.properties = {{"only", "one"}};
  installer_.paramsCount = "2147483647";
  const test::Result result = run();
  EXPECT_EQ(0, result.status);
  EXPECT_TRUE(mentions(result, "[DynProps] The params file ends after "));
  EXPECT_EQ("one", property("qvdyna_only"));
}

TEST_F(Properties, JreNameSelectsAnotherRuntimeAndExtractsAllWhereNoneOfThatNameStands) {
  // Even though the installed updater is newer than the carried one.
  installer_.installUpdater("6");
  installer_.properties = {{"jre_name", "OurJRE"}};
  const test::Result result = run();
  EXPECT_EQ(0, result.status) << result.out;
  EXPECT_TRUE(test::containsInOrder(
      test::logLinesOf(result.out),
      {"[DynProps] JRE name from dynamic launch properties is OurJRE",
       "[Extractor] No latest GU or JRE version exists, will check tail for online/offline info",
       "[Extractor] Note: No latest JRE version exists",
       "[Extractor] Note: Latest GU version does exist"}));
  EXPECT_TRUE(fs::exists(installer_.master("Quorvane-OurJRE-1407-complete/bin/java")));
  EXPECT_TRUE(logs(result, "[Extractor] Will now run latest GU Quorvane-Quorvane-6-complete"));
  EXPECT_TRUE(installer_.launched());
}

TEST_F(Properties, JreNameThatIsTheUpdatersEndsTheRunAndACorrectedOneInstallsAndStarts) {
  fs::remove_all(installer_.master());
  installer_.properties = {{"jre_name", "Quorvane"}};
  const test::Result refused = run();
  EXPECT_EQ(1, refused.status) << refused.out;
  EXPECT_TRUE(logs(refused, "[Extractor] The JRE name cannot name a component: Quorvane"))
      << refused.out;
  EXPECT_TRUE(installer_.versionFolders().empty());
  installer_.properties = {{"jre_name", "OurJRE"}};
  const test::Result corrected = run();
  EXPECT_EQ(0, corrected.status) << corrected.out;
  EXPECT_TRUE(fs::exists(installer_.master("Quorvane-OurJRE-1407-complete/bin/java")));
  EXPECT_TRUE(logs(corrected, "[Extractor] Will now run latest GU Quorvane-Quorvane-5-complete"));
  EXPECT_TRUE(installer_.launched());
}

TEST_F(Properties, JreNameOfAnotherFolderEndsTheRun) {
  installer_.properties = {{"jre_name", "../../x"}};
  EXPECT_EQ(1, run().status);
  EXPECT_FALSE(installer_.launched());
}

TEST_F(Properties, RequireSignatureWithAnyOtherValueAcceptsUnsignedInstallers) {
  installer_.properties = {{"require_signature", "TRUE"}};
  EXPECT_EQ(0, run().status);
  EXPECT_TRUE(installer_.launched());
}

TEST_F(Properties, StaticUpdateUrlWithASlashStaysAsItIs) {
  installer_.tail.updateUrl = "http://127.0.0.1/u/";
  const test::Result result = run();
  EXPECT_TRUE(logs(result, "[Extractor] Update URL is now 'http://127.0.0.1/u/'"));
  EXPECT_EQ("http://127.0.0.1/u/", property("qvstat_update_url"));
}

TEST_F(Properties, StaticUpdateUrlWithoutASlashIsStoredWithoutIt) {
  installer_.tail.updateUrl = "http://127.0.0.1/u";
  const test::Result result = run();
  EXPECT_TRUE(logs(result, "[Extractor] Update URL is now 'http://127.0.0.1/u/'"));
  EXPECT_EQ("http://127.0.0.1/u", property("qvstat_update_url"));
}

TEST_F(Properties, DynamicUpdateUrlWithoutASlashGainsOne) {
  installer_.tail.updateUrl = "D";
  installer_.properties = {{"update_url", "http://127.0.0.1/dynamic"}};
  const test::Result result = run();
  EXPECT_TRUE(logs(result, "[Extractor] Update URL is now 'http://127.0.0.1/dynamic/'"));
  EXPECT_EQ("D", property("qvstat_update_url"));
}

TEST_F(Properties, EmptyUpdateUrlStaysEmpty) {
  installer_.tail.updateUrl = "";
  const test::Result result = run();
  EXPECT_EQ(0, result.status);
  EXPECT_TRUE(logs(result, "[Extractor] Update URL is currently ''"));
  EXPECT_TRUE(logs(result, "[Extractor] Update URL is now ''"));
}

TEST_F(Properties, DynamicUpdateUrlIsNotUsedWhenTheTailNamesItsOwn) {
  installer_.tail.updateUrl = "http://127.0.0.1/static/";
  installer_.properties = {{"update_url", "http://127.0.0.1/dynamic/"}};
  const test::Result result = run();
  EXPECT_TRUE(logs(result, "[Extractor] Update URL is now 'http://127.0.0.1/static/'"));
}

TEST_F(Properties, EmptyPublicKeyIsLoggedWithItsLength) {
  EXPECT_TRUE(logs(run(), "[Extractor] Public key length 0 (no public key)"));
}

TEST_F(Properties, DamagedPublicKeyIsNoKeyAndTheRunGoesOn) {
  installer_.tail.publicKey = "30820122deadbeef";
  const test::Result result = run();
  EXPECT_EQ(0, result.status);
  EXPECT_TRUE(logs(result, "[Extractor] Public Key: 00000000"));
  EXPECT_TRUE(installer_.launched());
}
