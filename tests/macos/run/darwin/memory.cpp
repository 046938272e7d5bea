#include <malloc.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>

#include "tests/macos/run/darwin/errors.h"
#include "tests/macos/run/stop.h"
#include "tests/macos/run/supply/tables.h"

namespace macrun {

// What a function compares with a copy of its own at its end.
static uint64_t stackGuard = 0x00D1A37C55AA33FF;

[[noreturn]] static void stackGuardIsGone() {
  giveUp("a function has written over the end of its stack frame");
}

static int allocateAligned(void** bytes, size_t alignment, size_t size) {
  return toDarwinError(posix_memalign(bytes, alignment, size));
}

// _SC_PAGESIZE and _SC_NPROCESSORS_ONLN of <unistd.h>.
constexpr int kDarwinPageSize = 29, kDarwinProcessors = 58;

static long readSetting(int number) {
  switch (number) {
    case kDarwinPageSize:
      return sysconf(_SC_PAGESIZE);
    case kDarwinProcessors:
      return sysconf(_SC_NPROCESSORS_ONLN);
  }
  giveUp("sysconf: number %d is not supported", number);
}

static constexpr Supplied kMemory[] = {
    function<stackGuardIsGone>("___stack_chk_fail"),
    data<&stackGuard>("___stack_chk_guard"),
    translated<aligned_alloc>("_aligned_alloc"),
    translated<calloc>("_calloc"),
    function<free>("_free"),
    translated<malloc>("_malloc"),
    function<malloc_usable_size>("_malloc_size"),
    function<allocateAligned>("_posix_memalign"),
    translated<realloc>("_realloc"),
    function<readSetting>("_sysconf"),
};
const SupplyTable kMemoryTable = tableOf(kMemory);

}  // namespace macrun
