// The splash where no window system can be reached.
#include <gmock/gmock.h>

#include "tests/blackbox/support/splash_checks.h"

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

class SplashWithoutDisplayTest : public SplashTest {
 protected:
  void expectTwoLinesAndNothingElse() {
    EXPECT_THAT(
        lines(),
        ElementsAre("[Splash] No window system can be reached, going on without a splash window",
                    "[Splash] configureSplash with URL " + image_));
    EXPECT_THAT(err_, Not(HasSubstr("Image Size")));
    EXPECT_THAT(err_, Not(HasSubstr("Redrawer")));
    EXPECT_EQ(states_[0]["percent"], -100);
    EXPECT_EQ(states_[0].imageWidth, 300);
    EXPECT_EQ(states_[0]["visible"], 0);
  }

  Steps everyCall() {
    return {"init",    "buffer",   "12", "configure", image_, "show", "progress",      "-1",
            "refresh", "progress", "50", "size",      "10",   "10",   "hide-progress", "hide",
            "state",   "cleanup"};
  }
};

TEST_F(SplashWithoutDisplayTest, WithoutADisplayItIsSaidOnceAndNothingElseHappens) {
  playOn("", everyCall());
  expectTwoLinesAndNothingElse();
}

TEST_F(SplashWithoutDisplayTest, ADisplayThatDoesNotExistCountsAsNone) {
  playOn(":4711", everyCall());
  expectTwoLinesAndNothingElse();
}

TEST_F(SplashWithoutDisplayTest, ADisplayThatRefusesCountsAsNone) {
  const test::Result made = test::run(
      {{"/usr/bin/xauth", "-f", folder_ / "auth", "add", ":0", ".", std::string(32, 'a')}});
  ASSERT_EQ(made.status, 0) << made.err;
  const test::Background server(
      {{"/usr/bin/Xvfb", "-displayfd", "1", "-auth", folder_ / "auth", "-nolisten", "tcp"}});
  setenv("XAUTHORITY", "/dev/null", 1);
  playOn(":" + server.waitForLine(""), everyCall());
  expectTwoLinesAndNothingElse();
}
