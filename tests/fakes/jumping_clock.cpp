// A library to be preloaded that makes the wall clock jump. QUORVANE_CLOCK is START:STEP, in
// seconds: the clock stands at START and jumps by STEP after every 50 readings. sleep(), the pause
// of the long retries, returns at once. Only the process whose program is named "Setup" is meddled
// with.

#include <dlfcn.h>
#include <sys/syscall.h>
#include <sys/time.h>
#include <sys/timeb.h>
#include <time.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>

namespace {

struct Clock {
  bool isActive;
  long now;
  long step;
  long readings;
};

Clock readClock() {
  const char* text = getenv("QUORVANE_CLOCK");
  if (text == nullptr || strcmp(program_invocation_short_name, "Setup") != 0) {
    return {};
  }
  char* end = nullptr;
  const long start = strtol(text, &end, 10);
  return {true, start, strtol(end + 1, nullptr, 10), 0};
}

Clock& jumpingClock() {
  static Clock clock = readClock();
  return clock;
}

}  // namespace

extern "C" {

int clock_gettime(clockid_t which, timespec* result) noexcept {
  const long status = syscall(SYS_clock_gettime, which, result);
  Clock& clock = jumpingClock();
  if (status == 0 && clock.isActive && which == CLOCK_REALTIME) {
    result->tv_sec = clock.now;
    clock.now += ++clock.readings % 50 == 0 ? clock.step : 0;
  }
  return static_cast<int>(status);
}

int gettimeofday(timeval* result, void*) noexcept {
  timespec now{};
  clock_gettime(CLOCK_REALTIME, &now);
  result->tv_sec = now.tv_sec;
  result->tv_usec = now.tv_nsec / 1000;
  return 0;
}

time_t time(time_t* result) noexcept {
  timespec now{};
  clock_gettime(CLOCK_REALTIME, &now);
  if (result != nullptr) {
    *result = now.tv_sec;
  }
  return now.tv_sec;
}

unsigned sleep(unsigned seconds) {
  if (jumpingClock().isActive) {
    return 0;
  }
  static const auto next = reinterpret_cast<unsigned (*)(unsigned)>(dlsym(RTLD_NEXT, "sleep"));
  return next(seconds);
}

}  // extern "C"
