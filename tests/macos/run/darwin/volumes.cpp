#include <sys/statvfs.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "tests/macos/run/darwin/errors.h"
#include "tests/macos/run/supply/tables.h"

// What a file system has.

namespace macrun {

// struct statvfs of <sys/statvfs.h>: the counts have 32 bits.
struct DarwinVolume {
  uint64_t blockSize, fragmentSize;
  uint32_t blocks, freeBlocks, availableBlocks;
  uint32_t files, freeFiles, availableFiles;
  uint64_t number, flags, longestName;
};
static_assert(sizeof(DarwinVolume) == 64 && offsetof(DarwinVolume, number) == 40);

static uint32_t toCount(uint64_t count) {
  return static_cast<uint32_t>(std::min<uint64_t>(count, UINT32_MAX));
}

// ST_RDONLY and ST_NOSUID are the same there; it has no others.
static constexpr unsigned long kDarwinFlags = ST_RDONLY | ST_NOSUID;
static_assert(kDarwinFlags == 3);

static int readVolume(const char* path, DarwinVolume* volume) {
  struct statvfs found;
  if (translating([&] { return statvfs(path, &found); }) != 0) {
    return -1;
  }
  *volume = {found.f_bsize,
             found.f_frsize,
             toCount(found.f_blocks),
             toCount(found.f_bfree),
             toCount(found.f_bavail),
             toCount(found.f_files),
             toCount(found.f_ffree),
             toCount(found.f_favail),
             found.f_fsid,
             found.f_flag & kDarwinFlags,
             found.f_namemax};
  return 0;
}

static constexpr Supplied kVolumes[] = {
    function<readVolume>("_statvfs"),
};
const SupplyTable kVolumeTable = tableOf(kVolumes);

}  // namespace macrun
