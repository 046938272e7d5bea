#include "extractor/run/params_file.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "extractor/run/run.h"
#include "launch/launch_app.h"
#include "launch/launch_properties.h"
#include "support/splash/splash.h"
#include "tests/support/capture.h"
#include "tests/support/files.h"

using test::field;

namespace {

using Pairs = std::vector<std::pair<std::string, std::string>>;

ExtractorRun paramsRun{};

std::string paramsOf(const std::string& count, const Pairs& pairs) {
  std::string bytes = field(count);
  for (const auto& [name, value] : pairs) {
    bytes += field(name) + field(value);
  }
  return bytes;
}

std::vector<std::string> readAll(std::string bytes) {
  return test::logLinesOf([&bytes] {
    FILE* params = fmemopen(bytes.data(), bytes.size(), "rb");
    readParams(paramsRun, params);
    fclose(params);
  });
}

std::vector<std::string> readAll(const Pairs& pairs) {
  return readAll(paramsOf(std::to_string(pairs.size()), pairs));
}

// What the launch properties hold.
std::string properties() {
  return {paramsRun.launchProperties, static_cast<size_t>(propsLen(paramsRun.launchProperties))};
}

const std::string kRule = "++++++++++++++++++++++++++++++++++++++++++++++++";

}  // namespace

TEST(Params, CountZeroAddsNoDynamicProperty) {
  const auto lines = readAll(Pairs{});
  EXPECT_EQ("", properties());
  EXPECT_FALSE(paramsRun.dynamic.noUi);
  EXPECT_EQ((std::vector<std::string>{"", kRule, "+++ Processing 0 dynamic properties", kRule}),
            lines);
}

TEST(Params, NegativeCountReadsNothing) {
  readAll(paramsOf("-3", {{"show_no_ui", "true"}}));
  EXPECT_EQ("", properties());
}

TEST(Params, CountBeyondTheFileEndsWithTheFileAndSaysSo) {
  const auto lines = readAll(paramsOf("2000000000", {{"a", "b"}}));
  EXPECT_TRUE(test::containsInOrder(
      lines, {"[DynProps] Dynamic Param 0: a=[b]", "[DynProps] Dynamic Param 1: =[]",
              "[DynProps] The params file ends after 2 dynamic properties"}));
}

TEST(Params, EveryPairKnownOrNotBecomesADynamicProperty) {
  readAll(Pairs{{"colour", "blue"}, {"jre_name", "MyJRE"}});
  EXPECT_EQ("qvdyna_colour" + std::string(1, '\0') + "blue" + std::string(1, '\0') +
                "qvdyna_jre_name" + std::string(1, '\0') + "MyJRE",
            properties());
}

TEST(Params, ValueOf100CharactersIsShownWhole) {
  const std::string value(100, 'v');
  const auto lines = readAll(Pairs{{"n", value}});
  EXPECT_TRUE(test::containsInOrder(lines, {"[DynProps] Dynamic Param 0: n=[" + value + "]"}));
}

TEST(Params, LongValueShowsTheScratchTextAndNotTheValue) {
  const auto lines = readAll(Pairs{{"n", std::string(101, 'v')}});
  EXPECT_TRUE(test::containsInOrder(lines, {"[DynProps] Dynamic Param 0: n=[...]"}));
}

TEST(Params, LongValueAfterASplashImageShowsThatImagesFirst99Characters) {
  const std::string image(104, 'A');
  const auto lines = readAll(Pairs{{"splash_image", image}, {"n", std::string(101, 'v')}});
  const std::string shown(99, 'A');
  EXPECT_TRUE(test::containsInOrder(
      lines, {"[DynProps] Splash Image is " + shown + "...", "[DynProps] Base64 decoding image...",
              "[DynProps] Decode complete", "[DynProps] Dynamic Param 1: n=[" + shown + "...]"}));
}

TEST(Params, AutotestWithAnEmptyValueStillSetsItsFlag) {
  readAll(Pairs{{"wrapper_autotest", ""}});
  EXPECT_TRUE(paramsRun.dynamic.autotest);
}

TEST(Params, ShowNoUiInCapitalsDoesNotSetItsFlag) {
  readAll(Pairs{{"show_no_ui", "TRUE"}});
  EXPECT_FALSE(paramsRun.dynamic.noUi);
}

TEST(Params, ShowNoUiStaysSetWhenALaterPairSaysOtherwise) {
  readAll(Pairs{{"show_no_ui", "true"}, {"show_no_ui", "false"}});
  EXPECT_TRUE(paramsRun.dynamic.noUi);
}

TEST(Params, ForceSpawnFollowsItsLatestValue) {
  readAll(Pairs{{"force_spawn", "true"}});
  EXPECT_TRUE(forceSpawn);
  readAll(Pairs{{"force_spawn", "yes"}});
  EXPECT_FALSE(forceSpawn);
}

TEST(Params, SplashBufferSetsTheMarginUnlessItIsEmpty) {
  readAll(Pairs{{"splash_buffer", "12"}, {"splash_buffer", ""}});
  EXPECT_EQ(12, getSplashBuffer());
}

TEST(Params, SplashImageIsDecodedAndKeptWithItsLength) {
  readAll(Pairs{{"splash_image", "TWE="}});
  ASSERT_EQ(2u, paramsRun.dynamic.splashImageLength);
  EXPECT_EQ('M', paramsRun.dynamic.splashImage[0]);
}

TEST(Params, SplashImageThatIsNoBase64LengthCountsAsNone) {
  readAll(Pairs{{"splash_image", "TWE"}});
  EXPECT_EQ(nullptr, paramsRun.dynamic.splashImage);
  EXPECT_EQ(0u, paramsRun.dynamic.splashImageLength);
}

TEST(Params, JreNameStartsAsTheLaunchersDefault) {
  readAll(Pairs{});
  EXPECT_STREQ("Mac64JRE", paramsRun.jreName);
}

TEST(Params, JreNameReplacesTheDefault) {
  const auto lines = readAll(Pairs{{"jre_name", "MyJRE"}});
  EXPECT_STREQ("MyJRE", paramsRun.jreName);
  EXPECT_TRUE(test::containsInOrder(
      lines, {"[DynProps] JRE name from dynamic launch properties is MyJRE"}));
}

TEST(Params, JreNameThatLeavesTheMasterFolderEndsTheProcess) {
  const test::Result result = test::runInChild([] {
    readAll(Pairs{{"jre_name", "x/../../elsewhere"}});
  });
  EXPECT_EQ(1, result.status);
}

TEST(Params, PropertiesBeyondTheBufferEndTheProcessWithALoggedLine) {
  const test::Result result = test::runInChild([] {
    std::string bytes =
        paramsOf("2", {{"first", std::string(150000, 'a')}, {"second", std::string(60000, 'b')}});
    FILE* params = fmemopen(bytes.data(), bytes.size(), "rb");
    readParams(paramsRun, params);
  });
  EXPECT_EQ(1, result.status);
  EXPECT_TRUE(test::containsInOrder(
      test::logLinesOf(result.out),
      {"[Extractor] The launch properties do not fit their 200000 bytes: second"}));
}

TEST(Params, RequireSignatureIsSetByTrueOnly) {
  readAll(Pairs{{"require_signature", "1"}});
  EXPECT_FALSE(paramsRun.dynamic.requireSignature);
  readAll(Pairs{{"require_signature", "true"}});
  EXPECT_TRUE(paramsRun.dynamic.requireSignature);
}
