#include "support/log/clock.h"

#include <ctime>

#include <sys/time.h>

uint64_t systemTimeMillis() {
  timeval now{};
  gettimeofday(&now, nullptr);
  return static_cast<uint64_t>(now.tv_sec) * 1000 + static_cast<uint64_t>(now.tv_usec) / 1000;
}

// ftime() is gone from current systems; this clock has the same seconds and milliseconds.
static bool readWallClock(timespec* now) {
  return clock_gettime(CLOCK_REALTIME, now) == 0;
}

unsigned long getCurrentTimeMillis() {
  timespec now{};
  if (!readWallClock(&now)) {
    return 0;
  }
  return static_cast<unsigned long>(now.tv_sec) * 1000 +
         static_cast<unsigned long>(now.tv_nsec / 1000000);
}

int getJustMillis() {
  timespec now{};
  return readWallClock(&now) ? static_cast<int>(now.tv_nsec / 1000000) : 0;
}

void millisleep(long n) {
  const long seconds = n * 1000000 / 1000000;
  timespec duration{};
  duration.tv_sec = seconds;
  duration.tv_nsec = (n * 1000000 - seconds * 1000000) * 1000;
  nanosleep(&duration, nullptr);
}
