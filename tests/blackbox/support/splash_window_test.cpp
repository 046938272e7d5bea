// The splash's window: where it is, how large, and what unusual calls do to it.
#include <gmock/gmock.h>

#include "tests/blackbox/support/splash_checks.h"
#include "tests/support/files.h"

using testing::ElementsAre;
using testing::HasSubstr;

TEST_F(SplashTest, HideProgressMakesTheWindowSmallerAgain) {
  playShown(0, {"progress", "70", "hide-progress", "state", "shoot"});
  EXPECT_EQ(states_[0].height, 200);
  EXPECT_EQ(states_[0]["percent"], -100);
  expectImageAt(shots_[0], 0, 0);
}

TEST_F(SplashTest, HideProgressWhileHiddenDoesNotResize) {
  playShown(0, {"mark", "now", "hide-progress", "state"});
  EXPECT_EQ(lines().back(), "now");
  EXPECT_EQ(states_[0].height, 200);
}

TEST_F(SplashTest, TheSameValueAgainChangesNothing) {
  playShown(0, {"progress", "-1", "mark", "now", "progress", "-1", "progress", "-1"});
  EXPECT_EQ(lines().back(), "now");
}

TEST_F(SplashTest, TheWindowKeepsItsCentreThroughEveryChange) {
  playShown(0, {"state", "progress", "5", "state", "progress", "-100", "state", "progress", "-1",
                "state", "size", "100", "50", "state", "hide-progress", "state"});
  for (const auto& state : states_) {
    EXPECT_NEAR(state.x + state.width / 2, 640, 0.51);
    EXPECT_NEAR(state.y + state.height / 2, 400, 0.51);
  }
}

TEST_F(SplashTest, ChangesRightAfterOneAnotherEndInTheLastFrame) {
  playShown(0, {"progress", "0", "progress", "-100", "progress", "-1", "progress", "-100",
                "progress", "50", "run", "0.6", "state", "shoot"});
  EXPECT_EQ(states_[0].width, 300);
  EXPECT_EQ(states_[0].height, 218);
  EXPECT_EQ(states_[0].viewHeight, 218);
  EXPECT_EQ(states_[0].y, 291);
  expectImageAt(shots_[0], 0, 18);
  expectBar(shots_[0], 300, 150);
  EXPECT_EQ(shots_[0].at(0, -1), test::BLACK);
  EXPECT_EQ(shots_[0].at(0, 218), test::BLACK);
}

TEST_F(SplashTest, TheWindowIsBorderlessFloatingCentredAndShadowed) {
  play({"init", "configure", image_, "state", "show", "state"});
  EXPECT_EQ(states_[0]["visible"], 0);
  EXPECT_EQ(states_[1]["visible"], 1);
  EXPECT_EQ(states_[1]["style"], 0);
  EXPECT_EQ(states_[1]["shadow"], 1);
  EXPECT_GT(states_[1]["level"], states_[0]["level"]);
  EXPECT_EQ(states_[1].x, 490);
  EXPECT_EQ(states_[1].y, 300);
}

TEST_F(SplashTest, HidingTakesTheWindowOffTheScreenAndShowingBringsItBack) {
  playShown(0, {"hide", "shoot", "state", "show", "shoot"});
  expectPlain(shots_[0], 0, 0, 300, 200, test::BLACK);
  EXPECT_EQ(states_[0]["visible"], 0);
  expectImageAt(shots_[1], 0, 0);
}

TEST_F(SplashTest, CleanupTakesTheWindowAwayAndLaterCallsAreHarmless) {
  const Steps later{"progress", "30",   "hide-progress", "progress", "-1",
                    "refresh",  "show", "hide",          "cleanup",  "state"};
  Steps steps{"progress", "-1", "state", "cleanup", "screenshot", folder_ / "after.ppm"};
  steps.insert(steps.end(), later.begin(), later.end());
  playShown(0, steps);
  const test::Picture after(folder_ / "after.ppm");
  EXPECT_EQ(after.at(640, 400), test::BLACK);
  EXPECT_EQ(after.at(500, 320), test::BLACK);
}

TEST_F(SplashTest, TheStateBeforeAnythingHasHappened) {
  play({"state"});
  EXPECT_EQ(states_[0]["percent"], -100);
  EXPECT_EQ(states_[0]["frame"], 0);
  EXPECT_EQ(states_[0]["buffer"], 0);
  EXPECT_EQ(states_[0].imageWidth, 300);
  EXPECT_EQ(states_[0].imageHeight, 300);
}

TEST_F(SplashTest, InitMakesAWindowOf300By300) {
  play({"init", "state"});
  EXPECT_EQ(states_[0].width, 300);
  EXPECT_EQ(states_[0].height, 300);
  EXPECT_EQ(states_[0]["max"], 10);
  EXPECT_THAT(lines(), ElementsAre("[Splash] Initing splash...", "[Splash] Loading images..."));
}

TEST_F(SplashTest, ConfigurationSaysWhatItReadsAndHowLargeItIs) {
  play({"init", "configure", image(124, 88), "state"});
  EXPECT_EQ(states_[0].imageWidth, 124);
  EXPECT_EQ(states_[0].imageHeight, 88);
  EXPECT_EQ(lines()[2], "[Splash] configureSplash with URL " + image(124, 88));
  EXPECT_EQ(lines()[3], "[Splash] Resizing to 124 88");
  EXPECT_THAT(err_, HasSubstr("Image Size: 124 : 88\n"));
}

TEST_F(SplashTest, SetFrameSizeBeforeInitComputesFromAZeroRectangleAndTouchesNoWindow) {
  play({"size", "100", "50", "state"});
  EXPECT_THAT(lines(), ElementsAre("[Splash] Resizing to 100 50"));
  EXPECT_EQ(states_[0].width, 0);
}

TEST_F(SplashTest, EveryCallBeforeInitIsHarmless) {
  play({"configure", image_, "progress", "-1", "progress", "10", "show", "refresh", "hide",
        "hide-progress", "cleanup", "state"});
  EXPECT_EQ(states_[0].width, 0);
}

TEST_F(SplashTest, AnUnreadableImageCountsAsOneOfNoSize) {
  test::writeFile(folder_ / "broken.png", "\x89PNG\r\n\x1a\nthis is none");
  play({"init", "buffer", "20", "configure", folder_ / "broken.png", "show", "progress", "50",
        "state", "shoot", "configure", folder_ / "missing.png", "state"});
  EXPECT_EQ(states_[0].imageWidth, 0);
  EXPECT_EQ(states_[0].imageHeight, 0);
  EXPECT_EQ(states_[0].width, 40);
  EXPECT_EQ(states_[0].height, 58);
  expectBar(shots_[0], 40, 20);
  expectPlain(shots_[0], 0, 18, 40, 40, test::WHITE);
  EXPECT_EQ(states_[1].width, 40);
  EXPECT_EQ(states_[1].height, 40);
  EXPECT_THAT(err_, HasSubstr("Image Size: 0 : 0\n"));
}

TEST_F(SplashTest, AnImageOfNoSizeWithoutAMarginCanBeShown) {
  play({"init", "configure", folder_ / "missing.png", "show", "progress", "-1", "work", "0.1",
        "progress", "-100", "state"});
  EXPECT_EQ(states_[0]["visible"], 1);
}

TEST_F(SplashTest, AnOddMarginIsBounded) {
  for (const char* margin : {"2147483647", "-2147483648", "-150"}) {
    play({"init", "buffer", margin, "configure", image_, "show", "progress", "50", "refresh",
          "state", "progress", "-100"});
    EXPECT_EQ(states_.back()["buffer"], atoi(margin));
    EXPECT_LE(states_.back().width, 4096);
    EXPECT_GE(states_.back().width, 0);
  }
}
