// The indeterminate bar: its stripe on the screen, and the thread behind it.
#include <set>

#include "tests/blackbox/support/splash_checks.h"

class SplashMovingTest : public SplashTest {
 protected:
  // Shows the moving bar and spends time with `step`, looking at the frame ten times meanwhile and
  // at the screen before and after.
  void playMoving(const std::string& step) {
    Steps steps{"progress", "-1", "shoot", "state"};
    for (int i = 0; i < 10; ++i) {
      steps.insert(steps.end(), {step, "0.07", "state"});
    }
    steps.push_back("shoot");
    playShown(0, steps);
  }

  // Expects that frames have gone by and that the screen shows the last one.
  void expectMoved() {
    std::set<int> frames;
    for (const auto& state : states_) {
      frames.insert(state["frame"]);
    }
    EXPECT_GE(frames.size(), 3U);
    expectStripe(shots_[0], 300, states_.front()["frame"]);
    expectStripe(shots_[1], 300, states_.back()["frame"]);
  }
};

TEST_F(SplashMovingTest, TheIndeterminateBarIsDrawnAtItsFrame) {
  playShown(0, {"progress", "-1", "state", "shoot"});
  expectStripe(shots_[0], 300, states_[0]["frame"]);
  expectImageAt(shots_[0], 0, 18);
}

TEST_F(SplashMovingTest, TheStripeMovesWhileTheRunLoopRuns) {
  playMoving("run");
  expectMoved();
}

TEST_F(SplashMovingTest, TheStripeMovesWhileTheMainThreadIsBusyAndRefreshes) {
  playMoving("work");
  expectMoved();
}

TEST_F(SplashMovingTest, TheStripeMovesWhileAChildProcessIsWaitedFor) {
  playMoving("spawn");
  expectMoved();
}

TEST_F(SplashMovingTest, TheStripeStandsStillWhileTheMainThreadIsBlocked) {
  playMoving("sleep");
  for (const auto& state : states_) {
    EXPECT_EQ(state["frame"], states_[0]["frame"]);
  }
}

TEST_F(SplashMovingTest, EveryDrawingMovesTheStripeByOnePointAndTheEleventhBeginsAnew) {
  Steps steps{"progress", "-1", "state"};
  for (int i = 0; i < 24; ++i) {
    steps.insert(steps.end(), {"draw", "state"});
  }
  playShown(0, steps);
  for (size_t i = 1; i < states_.size(); ++i) {
    EXPECT_EQ(states_[i]["frame"], (states_[i - 1]["frame"] + 1) % 11);
  }
}

TEST_F(SplashMovingTest, TheFirstDrawingUsesFrameOne) {
  playShown(0, {"state", "progress", "-1", "state"});
  EXPECT_EQ(states_[0]["frame"], 0);
  EXPECT_EQ(states_[0]["max"], 10);
  EXPECT_GE(states_[1]["frame"], 1);
}

TEST_F(SplashMovingTest, TheIndeterminateStateTwiceRunsOneRedrawThread) {
  playShown(0,
            {"state", "progress", "-1", "sleep", "0.1", "progress", "-1", "sleep", "0.1", "state"});
  EXPECT_EQ(states_[1]["threads"], states_[0]["threads"] + 1);
  const size_t first = err_.find("Redrawer running!");
  ASSERT_NE(first, std::string::npos);
  EXPECT_EQ(err_.find("Redrawer running!", first + 1), std::string::npos);
}

TEST_F(SplashMovingTest, TheRedrawThreadEndsAfterLeavingTheIndeterminateState) {
  playShown(0, {"state", "progress", "-1", "sleep", "0.1", "state", "progress", "20", "sleep", "1",
                "state"});
  EXPECT_EQ(states_[1]["threads"], states_[0]["threads"] + 1);
  EXPECT_EQ(states_[2]["threads"], states_[0]["threads"]);
  EXPECT_EQ(states_[2]["redrawing"], 0);
}

TEST_F(SplashMovingTest, TheRedrawThreadEndsWhenTheBarIsHiddenThroughItsValue) {
  playShown(0, {"state", "progress", "-1", "progress", "-100", "sleep", "1", "state"});
  EXPECT_EQ(states_[1]["threads"], states_[0]["threads"]);
}

TEST_F(SplashMovingTest, TheRedrawThreadEndsAtCleanup) {
  playShown(0, {"state", "progress", "-1", "cleanup", "sleep", "1", "state"});
  EXPECT_EQ(states_[1]["threads"], states_[0]["threads"]);
}

TEST_F(SplashMovingTest, HideProgressLeavesTheRedrawThreadAndTheNextStartReplacesIt) {
  playShown(0, {"state", "progress", "-1", "hide-progress", "sleep", "0.1", "state", "progress",
                "-1", "sleep", "1", "state"});
  EXPECT_EQ(states_[1]["threads"], states_[0]["threads"] + 1);
  EXPECT_EQ(states_[2]["threads"], states_[0]["threads"] + 1);
}
