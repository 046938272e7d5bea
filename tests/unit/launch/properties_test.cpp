#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "launch/launch.h"
#include "tests/unit/launch/launching.h"
#include "tests/unit/launch/open_url.h"

using namespace std::string_literals;

// Launches of another class start nothing, so that only the properties come of them.
class HandedOnProperties : public Launching {
 protected:
  HandedOnProperties() { launchClass = 2; }
};

TEST_F(HandedOnProperties, AreTheCallersThenTheLaunchsWithoutAClosingZero) {
  EXPECT_EQ(-1, launch().result);
  EXPECT_EQ("qvstat_app_name\0Sample\0"s + "qvstat_update_url\0http://127.0.0.1/updates/\0"s +
                "qvstat_app_dir\0"s + scene.appFolder() + "\0qvstat_jre_name\0Mac64JRE\0"s +
                "qvstat_launched_from_dynprops\0/opt/wrapper"s,
            writtenBytes());
}

TEST_F(HandedOnProperties, OfAnEmptyBufferAreTheLaunchsAlone) {
  properties = "\0\0"s;
  updateUrl.clear();
  launch();
  EXPECT_EQ("qvstat_update_url\0\x04\0qvstat_app_dir\0"s,
            writtenBytes().substr(0, "qvstat_update_url\0\x04\0qvstat_app_dir\0"s.size()));
}

TEST_F(HandedOnProperties, HoldTheDynamicUpdateUrlBehindAStaticOneOfD) {
  updateUrl = "D";
  dynamicUpdateUrl = "http://127.0.0.1/dynamic/";
  launch();
  const std::vector<std::string> texts = written();
  ASSERT_GE(texts.size(), 6u);
  EXPECT_EQ((std::vector<std::string>{"qvstat_update_url", "D", "qvdyna_update_url",
                                      "http://127.0.0.1/dynamic/"}),
            std::vector<std::string>(texts.begin() + 2, texts.begin() + 6));
}

TEST_F(HandedOnProperties, HoldNoDynamicUpdateUrlWhenNoneWasGiven) {
  updateUrl = "D";
  launch();
  EXPECT_EQ("(none)", test::propertyIn(written(), "qvdyna_update_url"));
}

TEST_F(HandedOnProperties, HoldNoDynamicUpdateUrlBehindAnotherStaticOne) {
  updateUrl = "DD";
  dynamicUpdateUrl = "http://127.0.0.1/dynamic/";
  launch();
  EXPECT_EQ("DD", test::propertyIn(written(), "qvstat_update_url"));
  EXPECT_EQ("(none)", test::propertyIn(written(), "qvdyna_update_url"));
}

TEST_F(HandedOnProperties, HoldTheRequestedUrl) {
  beforeLaunch = [] { openUrl("sample://open/Größe?a=b c"); };
  const Launched launched = launch();
  EXPECT_EQ("sample://open/Größe?a=b c", test::propertyIn(written(), "qvdyna_url_req"));
  EXPECT_TRUE(test::containsInOrder(
      launched.lines,
      {"[Extractor] Creating launch properties",
       "[Extractor] Setting URL request dynamic property to 'sample://open/Größe?a=b c'",
       "[Extractor] Checking LSO file"}));
}

TEST_F(HandedOnProperties, HoldNoRequestedUrlWithoutARequest) {
  launch();
  EXPECT_EQ("(none)", test::propertyIn(written(), "qvdyna_url_req"));
}

TEST_F(HandedOnProperties, OfAFullIncomingBufferGetTwoHundredThousandBytesMore) {
  properties = "qvstat_big\0"s + std::string(199000, 'x') + "\0\0"s;
  updateUrl = std::string(199000, 'u');
  launch();
  EXPECT_EQ(updateUrl, test::propertyIn(written(), "qvstat_update_url"));
}

TEST_F(HandedOnProperties, ThatDoNotFitEndTheProcessWithOneErrorLineAndStatusOne) {
  updateUrl = std::string(ADDED_PROPERTIES_SIZE, 'u');
  const Launched launched = launch();
  EXPECT_FALSE(launched.returned);
  EXPECT_EQ(1, launched.result);
  EXPECT_EQ((std::vector<std::string>{
                "Unable to launch: the property update_url does not fit the launch properties"}),
            errorsIn(launched.lines));
  EXPECT_TRUE(scene.propertiesFiles().empty());
}
