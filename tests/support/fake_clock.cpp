#include "tests/support/fake_clock.h"

#include <pthread.h>
#include <sys/time.h>
#include <time.h>
#include <unistd.h>

#include <cerrno>

#include "tests/support/real_functions.h"

namespace {

struct State {
  bool active = false;
  pthread_t owner{};  // whose sleeps move the clock; the toolkit's threads sleep on their own
  bool failing = false;
  int64_t now = 0;    // microseconds since the epoch
  int64_t slept = 0;  // microseconds
};
State state;

bool movesTheClock() {
  return state.active && pthread_equal(state.owner, pthread_self()) != 0;
}

void sleepFor(int64_t microseconds) {
  state.slept += microseconds;
  state.now += microseconds;
}

}  // namespace

namespace test {

FakeClock::FakeClock(int64_t millisecondsSinceEpoch) {
  state = State{};
  state.active = true;
  state.owner = pthread_self();
  state.now = millisecondsSinceEpoch * 1000;
}

FakeClock::~FakeClock() {
  state = State{};
}

void FakeClock::advance(int64_t milliseconds) {
  state.now += milliseconds * 1000;
}

void FakeClock::fail() {
  state.failing = true;
}

int64_t FakeClock::sleptMilliseconds() const {
  return state.slept / 1000;
}

}  // namespace test

extern "C" {

int clock_gettime(clockid_t clock, timespec* result) {
  if (!state.active || clock != CLOCK_REALTIME) {
    return test::realClockGettime(clock, result);
  }
  if (state.failing) {
    errno = EINVAL;
    return -1;
  }
  result->tv_sec = state.now / 1000000;
  result->tv_nsec = state.now % 1000000 * 1000;
  return 0;
}

int gettimeofday(timeval* result, void*) {
  timespec now{};
  if (clock_gettime(CLOCK_REALTIME, &now) != 0) {
    return -1;
  }
  result->tv_sec = now.tv_sec;
  result->tv_usec = now.tv_nsec / 1000;
  return 0;
}

time_t time(time_t* result) {
  timespec now{};
  const time_t seconds = clock_gettime(CLOCK_REALTIME, &now) == 0 ? now.tv_sec : -1;
  if (result != nullptr) {
    *result = seconds;
  }
  return seconds;
}

int nanosleep(const timespec* duration, timespec* rest) {
  if (!movesTheClock()) {
    return test::realNanosleep(duration, rest);
  }
  sleepFor(duration->tv_sec * 1000000 + duration->tv_nsec / 1000);
  return 0;
}

int usleep(useconds_t microseconds) {
  timespec duration{};
  duration.tv_sec = microseconds / 1000000;
  duration.tv_nsec = microseconds % 1000000 * 1000;
  return nanosleep(&duration, nullptr);
}
}
