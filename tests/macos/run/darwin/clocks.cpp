#include <sys/time.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <ctime>

#include "tests/macos/run/darwin/errors.h"
#include "tests/macos/run/supply/tables.h"

namespace macrun {

// clockid_t of <time.h>.
static int fromDarwinClock(int clock) {
  switch (clock) {
    case 0:
      return CLOCK_REALTIME;
    case 4:  // CLOCK_MONOTONIC_RAW
    case 5:
      return CLOCK_MONOTONIC_RAW;
    case 6:  // CLOCK_MONOTONIC, which goes on while the computer sleeps
      return CLOCK_BOOTTIME;
    case 8:  // CLOCK_UPTIME_RAW
    case 9:
      return CLOCK_MONOTONIC_RAW;
    case 12:
      return CLOCK_PROCESS_CPUTIME_ID;
    case 16:
      return CLOCK_THREAD_CPUTIME_ID;
    default:
      return -1;
  }
}

static int readClock(int clock, timespec* time) {
  const int linux = fromDarwinClock(clock);
  return linux < 0 ? failWith(darwin::kEINVAL)
                   : translating([&] { return clock_gettime(linux, time); });
}

// struct timeval of <sys/_types/_timeval.h>: the microseconds have 32 bits.
struct DarwinTime {
  int64_t seconds;
  int32_t microseconds;
};
static_assert(sizeof(DarwinTime) == 16);

static int readTime(DarwinTime* time, void*) {
  timeval now;
  gettimeofday(&now, nullptr);
  *time = {now.tv_sec, static_cast<int32_t>(now.tv_usec)};
  return 0;
}

// struct tm of <time.h> has the same fields in the same order.
static_assert(sizeof(tm) == 56 && offsetof(tm, tm_gmtoff) == 40 && offsetof(tm, tm_zone) == 48);

static constexpr Supplied kClocks[] = {
    function<readClock>("_clock_gettime"),
    function<readTime>("_gettimeofday"),
    function<gmtime_r>("_gmtime_r"),
    function<localtime_r>("_localtime_r"),
    function<mktime>("_mktime"),
    translated<nanosleep>("_nanosleep"),
    function<sleep>("_sleep"),
    function<strftime>("_strftime"),
    function<time>("_time"),
    translated<usleep>("_usleep"),
};
const SupplyTable kClockTable = tableOf(kClocks);

}  // namespace macrun
