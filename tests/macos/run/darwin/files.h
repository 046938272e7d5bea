#ifndef QUORVANE_TESTS_MACOS_RUN_DARWIN_FILES_H
#define QUORVANE_TESTS_MACOS_RUN_DARWIN_FILES_H

#include <sys/stat.h>
#include <sys/types.h>

#include <cstddef>
#include <cstdint>
#include <ctime>

namespace macrun {

// Darwin's records and numbers for files, with their sources.

// struct stat with 64-bit file numbers: __DARWIN_STRUCT_STAT64 in <sys/stat.h>.
struct DarwinStatus {
  int32_t device;
  uint16_t mode, links;
  uint64_t number;
  uint32_t owner, group;
  int32_t specialDevice;
  timespec accessed, changed, statusChanged, created;
  int64_t size, blocks;
  int32_t blockSize;
  uint32_t flags, generation;
  int32_t reserved;
  int64_t moreReserved[2];
};
static_assert(sizeof(DarwinStatus) == 144 && offsetof(DarwinStatus, number) == 8 &&
              offsetof(DarwinStatus, accessed) == 32 && offsetof(DarwinStatus, size) == 96 &&
              offsetof(DarwinStatus, blockSize) == 112);

DarwinStatus toDarwinStatus(const struct stat& status);

// AT_FDCWD and the flags of <sys/fcntl.h>.
constexpr int kDarwinWorkingFolder = -2;
constexpr int kDarwinEffectiveAccess = 0x10, kDarwinNoFollow = 0x20, kDarwinFollow = 0x40,
              kDarwinRemoveFolder = 0x80;

// A folder's descriptor for a call that ends in "at".
int fromDarwinFolder(int handle);

// The flags of a call that ends in "at"; gives up at one that Linux has nothing for.
int fromDarwinAtFlags(int flags);

// The flags of open(): O_… in <sys/fcntl.h>.
int fromDarwinOpenFlags(int flags);

}  // namespace macrun

#endif
