#ifndef QUORVANE_TESTS_SUPPORT_FAKE_CLOCK_H
#define QUORVANE_TESTS_SUPPORT_FAKE_CLOCK_H

#include <cstdint>

namespace test {

// While an object of this class lives, the process's wall clock stands at a time of the test's
// choice, and a sleep returns at once and moves that clock instead. Time-outs that are measured
// with the monotonic clock do not notice. One at a time, one thread.
//
// It takes the places of the C library's time(), gettimeofday(), clock_gettime(), nanosleep() and
// usleep() in every executable that uses it; without an object they do what they always do.
class FakeClock {
 public:
  explicit FakeClock(int64_t millisecondsSinceEpoch);
  ~FakeClock();
  FakeClock(const FakeClock&) = delete;
  FakeClock& operator=(const FakeClock&) = delete;

  void advance(int64_t milliseconds);

  // Makes every reading of the wall clock fail.
  void fail();

  // The sum of the sleeps since the start.
  int64_t sleptMilliseconds() const;
};

}  // namespace test

#endif
