#include "support/log/clock.h"

#include <gtest/gtest.h>
#include <sys/time.h>

#include "tests/support/fake_clock.h"

static const int64_t kClockMoment = 1456837509042;

TEST(Clock, GivesMillisecondsSinceTheEpoch) {
  const test::FakeClock clock(kClockMoment);
  EXPECT_EQ(static_cast<uint64_t>(kClockMoment), systemTimeMillis());
  EXPECT_EQ(static_cast<unsigned long>(kClockMoment), getCurrentTimeMillis());
}

TEST(Clock, GivesTheMillisecondPartAlone) {
  const test::FakeClock clock(kClockMoment);
  EXPECT_EQ(42, getJustMillis());
}

TEST(Clock, GivesZeroWhenItCannotBeRead) {
  test::FakeClock clock(kClockMoment);
  clock.fail();
  EXPECT_EQ(0u, getCurrentTimeMillis());
  EXPECT_EQ(0, getJustMillis());
}

TEST(Clock, FollowsTheRealClock) {
  const auto before = static_cast<uint64_t>(time(nullptr));
  const uint64_t now = systemTimeMillis() / 1000;
  const auto after = static_cast<uint64_t>(time(nullptr));
  EXPECT_LE(before, now);
  EXPECT_LE(now, after);
}

TEST(Millisleep, SleepsWholeSecondsInsteadOfMilliseconds) {
  const test::FakeClock clock(kClockMoment);
  millisleep(3);
  EXPECT_EQ(3000, clock.sleptMilliseconds());
}

TEST(Millisleep, DoesNotSleepForZero) {
  const test::FakeClock clock(kClockMoment);
  millisleep(0);
  EXPECT_EQ(0, clock.sleptMilliseconds());
}
