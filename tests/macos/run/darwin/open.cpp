#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "tests/macos/run/darwin/errors.h"
#include "tests/macos/run/darwin/files.h"
#include "tests/macos/run/stop.h"
#include "tests/macos/run/supply/tables.h"

namespace macrun {

struct OpenFlag {
  int darwin, linux;
};

// <sys/fcntl.h>
constexpr int kDarwinNoLinks = 0x100, kDarwinFolderOnly = 0x100000;

static constexpr OpenFlag kOpenFlags[] = {
    {0x4, O_NONBLOCK},
    {0x8, O_APPEND},
    {0x40, O_ASYNC},
    {0x80, O_SYNC},
    {kDarwinNoLinks, O_NOFOLLOW},
    {0x200, O_CREAT},
    {0x400, O_TRUNC},
    {0x800, O_EXCL},
    {0x20000, O_NOCTTY},
    {kDarwinFolderOnly, O_DIRECTORY},
    {0x400000, O_DSYNC},
    {0x1000000, O_CLOEXEC},
};

int fromDarwinOpenFlags(int flags) {
  int linux = flags & 3;  // reading, writing, both: the same
  int rest = flags & ~3;
  for (const OpenFlag& flag : kOpenFlags) {
    if ((rest & flag.darwin) != 0) {
      linux |= flag.linux;
      rest &= ~flag.darwin;
    }
  }
  if (rest != 0) {
    giveUp("open: flags %#x are not supported", static_cast<unsigned>(rest));
  }
  return linux;
}

static int toDarwinOpenFlags(int linux) {
  int flags = linux & 3;
  for (const OpenFlag& flag : kOpenFlags) {
    flags |= (linux & flag.linux) == flag.linux ? flag.darwin : 0;
  }
  return flags;
}

int fromDarwinFolder(int handle) {
  return handle == kDarwinWorkingFolder ? AT_FDCWD : handle;
}

int fromDarwinAtFlags(int flags) {
  constexpr int kKnown = kDarwinEffectiveAccess | kDarwinNoFollow | kDarwinFollow;
  if ((flags & ~kKnown) != 0) {
    giveUp("flags %#x of a call that ends in \"at\" are not supported",
           static_cast<unsigned>(flags));
  }
  return ((flags & kDarwinEffectiveAccess) != 0 ? AT_EACCESS : 0) |
         ((flags & kDarwinNoFollow) != 0 ? AT_SYMLINK_NOFOLLOW : 0) |
         ((flags & kDarwinFollow) != 0 ? AT_SYMLINK_FOLLOW : 0);
}

static bool isLink(int folder, const char* path) {
  struct stat status;
  return fstatat(folder, path, &status, AT_SYMLINK_NOFOLLOW) == 0 && S_ISLNK(status.st_mode);
}

static int openIn(int darwinFolder, const char* path, int flags, unsigned mode) {
  if (!isPathShort(path)) {
    return -1;
  }
  const int folder = fromDarwinFolder(darwinFolder);
  const int handle =
      translating([&] { return openat(folder, path, fromDarwinOpenFlags(flags), mode); });
  // A link where neither a link nor anything but a folder is taken: Linux reports the latter first.
  if (handle < 0 && darwinErrno() == darwin::kENOTDIR && (flags & kDarwinNoLinks) != 0 &&
      (flags & kDarwinFolderOnly) != 0 && isLink(folder, path)) {
    return failWith(darwin::kELOOP);
  }
  return handle;
}

// Both are declared with "..." and get the mode in the register of a third or fourth argument.
static int openFile(const char* path, int flags, unsigned mode) {
  return openIn(kDarwinWorkingFolder, path, flags, mode);
}

static int openFileAt(int folder, const char* path, int flags, unsigned mode) {
  return openIn(folder, path, flags, mode);
}

// The commands of fcntl(), F_… in <sys/fcntl.h>.
enum DarwinCommand {
  kDuplicate = 0,
  kGetDescriptorFlags = 1,
  kSetDescriptorFlags = 2,
  kGetStatusFlags = 3,
  kSetStatusFlags = 4,
  kFullSync = 51,
  kDuplicateCloseOnExec = 67,
};

static int control(int handle, int command, long argument) {
  const int number = static_cast<int>(argument);
  switch (command) {
    case kDuplicate:
      return translating([&] { return fcntl(handle, F_DUPFD, number); });
    case kDuplicateCloseOnExec:
      return translating([&] { return fcntl(handle, F_DUPFD_CLOEXEC, number); });
    case kGetDescriptorFlags:
      return translating([&] { return fcntl(handle, F_GETFD); });
    case kSetDescriptorFlags:
      return translating([&] { return fcntl(handle, F_SETFD, number); });
    case kGetStatusFlags: {
      const int flags = translating([&] { return fcntl(handle, F_GETFL); });
      return flags < 0 ? flags : toDarwinOpenFlags(flags);
    }
    case kSetStatusFlags:
      return translating([&] { return fcntl(handle, F_SETFL, fromDarwinOpenFlags(number)); });
    case kFullSync:
      return translating([&] { return fsync(handle); });
    default:
      giveUp("fcntl: command %d is not supported", command);
  }
}

static constexpr Supplied kOpen[] = {
    function<control>("_fcntl"),
    function<openFile>("_open"),
    function<openFileAt>("_openat"),
};
const SupplyTable kOpenTable = tableOf(kOpen);

}  // namespace macrun
