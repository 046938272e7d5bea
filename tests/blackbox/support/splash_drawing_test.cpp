// What the splash draws, point by point on a real screen.
#include "tests/blackbox/support/splash_checks.h"

TEST_F(SplashTest, WithoutAMarginTheImageFillsTheWindow) {
  playShown(0, {"state", "shoot"});
  EXPECT_EQ(states_[0].width, 300);
  EXPECT_EQ(states_[0].height, 200);
  expectImageAt(shots_[0], 0, 0);
  EXPECT_EQ(shots_[0].at(-1, 0), test::BLACK);
  EXPECT_EQ(shots_[0].at(300, 199), test::BLACK);
  EXPECT_EQ(shots_[0].at(0, -1), test::BLACK);
  EXPECT_EQ(shots_[0].at(299, 200), test::BLACK);
}

TEST_F(SplashTest, WithAMarginOf12TheImageHasAWhiteBorderOf12) {
  playShown(12, {"state", "shoot"});
  EXPECT_EQ(states_[0].width, 324);
  EXPECT_EQ(states_[0].height, 224);
  expectImageAt(shots_[0], 12, 12);
  expectPlain(shots_[0], 0, 0, 324, 12, test::WHITE);
  expectPlain(shots_[0], 0, 212, 324, 12, test::WHITE);
  expectPlain(shots_[0], 0, 0, 12, 224, test::WHITE);
  expectPlain(shots_[0], 312, 0, 12, 224, test::WHITE);
}

TEST_F(SplashTest, WithTheBarTheImageKeepsItsPlaceAboveIt) {
  playShown(0, {"progress", "50", "state", "shoot"});
  EXPECT_EQ(states_[0].height, 218);
  expectImageAt(shots_[0], 0, 18);
}

TEST_F(SplashTest, WithAMarginAndTheBarTheImageKeepsTheMarginAboveIt) {
  playShown(12, {"progress", "50", "state", "shoot"});
  EXPECT_EQ(states_[0].width, 324);
  EXPECT_EQ(states_[0].height, 242);
  expectImageAt(shots_[0], 12, 30);
  expectPlain(shots_[0], 0, 230, 324, 12, test::WHITE);
  expectPlain(shots_[0], 0, 18, 324, 12, test::WHITE);
  expectBar(shots_[0], 324, 162);
}

TEST_F(SplashTest, AtZeroPercentTheBarIsAllTrack) {
  playShown(0, {"progress", "0", "shoot"});
  expectBar(shots_[0], 300, 0);
}

TEST_F(SplashTest, AtFiftyPercentOf300PointsTheFillEndsAt150) {
  playShown(0, {"progress", "50", "shoot"});
  expectBar(shots_[0], 300, 150);
}

TEST_F(SplashTest, AtOneHundredPercentTheBarIsAllFill) {
  playShown(0, {"progress", "100", "shoot"});
  expectBar(shots_[0], 300, 300);
}

TEST_F(SplashTest, AFillIsCutToWholePoints) {
  playShown(0, {"progress", "1", "shoot", "progress", "33", "shoot", "progress", "99", "shoot"});
  expectBar(shots_[0], 300, 3);
  expectBar(shots_[1], 300, 99);
  expectBar(shots_[2], 300, 297);
}

TEST_F(SplashTest, ValuesAbove100ShowAFullBar) {
  playShown(0, {"progress", "150", "state", "shoot"});
  EXPECT_EQ(states_[0]["percent"], 100);
  expectBar(shots_[0], 300, 300);
}

TEST_F(SplashTest, ValuesBelowMinus100ShowAnEmptyBarNotAHiddenOne) {
  playShown(0, {"progress", "-500", "state", "shoot"});
  EXPECT_EQ(states_[0]["percent"], 0);
  EXPECT_EQ(states_[0].height, 218);
  expectBar(shots_[0], 300, 0);
}

TEST_F(SplashTest, OtherNegativeValuesMakeRoomForABarThatIsNotDrawn) {
  playShown(0, {"progress", "-50", "state", "shoot"});
  EXPECT_EQ(states_[0]["percent"], -50);
  EXPECT_EQ(states_[0].height, 218);
  expectPlain(shots_[0], 0, 0, 300, 18, test::WHITE);
  expectImageAt(shots_[0], 0, 18);
}
