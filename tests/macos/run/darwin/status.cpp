#include <fcntl.h>
#include <sys/stat.h>

#include "tests/macos/run/darwin/errors.h"
#include "tests/macos/run/darwin/files.h"
#include "tests/macos/run/supply/tables.h"

namespace macrun {

DarwinStatus toDarwinStatus(const struct stat& status) {
  DarwinStatus darwin{};
  darwin.device = static_cast<int32_t>(status.st_dev);
  darwin.mode = static_cast<uint16_t>(status.st_mode);
  darwin.links = static_cast<uint16_t>(status.st_nlink);
  darwin.number = status.st_ino;
  darwin.owner = status.st_uid;
  darwin.group = status.st_gid;
  darwin.specialDevice = static_cast<int32_t>(status.st_rdev);
  darwin.accessed = status.st_atim;
  darwin.changed = status.st_mtim;
  darwin.statusChanged = status.st_ctim;
  darwin.created = status.st_ctim;  // not known here
  darwin.size = status.st_size;
  darwin.blocks = status.st_blocks;
  darwin.blockSize = static_cast<int32_t>(status.st_blksize);
  return darwin;
}

template <class Call>
static int readStatus(DarwinStatus* darwin, Call call) {
  struct stat status;
  const int result = translating([&] { return call(&status); });
  if (result == 0) {
    *darwin = toDarwinStatus(status);
  }
  return result;
}

static int statusOf(const char* path, DarwinStatus* darwin) {
  if (!isPathShort(path)) {
    return -1;
  }
  return readStatus(darwin, [&](struct stat* status) { return stat(path, status); });
}

static int statusOfLink(const char* path, DarwinStatus* darwin) {
  if (!isPathShort(path)) {
    return -1;
  }
  return readStatus(darwin, [&](struct stat* status) { return lstat(path, status); });
}

static int statusOfHandle(int handle, DarwinStatus* darwin) {
  return readStatus(darwin, [&](struct stat* status) { return fstat(handle, status); });
}

static int statusAt(int folder, const char* path, DarwinStatus* darwin, int flags) {
  if (!isPathShort(path)) {
    return -1;
  }
  return readStatus(darwin, [&](struct stat* status) {
    return fstatat(fromDarwinFolder(folder), path, status, fromDarwinAtFlags(flags));
  });
}

static constexpr Supplied kStatus[] = {
    function<statusOfHandle>("_fstat$INODE64"),
    function<statusAt>("_fstatat$INODE64"),
    function<statusOfLink>("_lstat$INODE64"),
    function<statusOf>("_stat$INODE64"),
};
const SupplyTable kStatusTable = tableOf(kStatus);

}  // namespace macrun
