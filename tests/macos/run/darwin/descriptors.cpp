#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include "tests/macos/run/darwin/errors.h"
#include "tests/macos/run/supply/tables.h"

// Calls that take a descriptor and mean the same on both systems.

namespace macrun {

// flock()'s operations have the same numbers in <sys/fcntl.h>: 1, 2, 4 and 8.
static_assert(LOCK_SH == 1 && LOCK_EX == 2 && LOCK_NB == 4 && LOCK_UN == 8);
static_assert(SEEK_SET == 0 && SEEK_CUR == 1 && SEEK_END == 2);

static constexpr Supplied kDescriptors[] = {
    translated<close>("_close"),
    translated<dup>("_dup"),
    translated<dup2>("_dup2"),
    translated<fchdir>("_fchdir"),
    translated<fchmod>("_fchmod"),
    translated<fchown>("_fchown"),
    translated<flock>("_flock"),
    translated<fsync>("_fsync"),
    translated<ftruncate>("_ftruncate"),
    translated<isatty>("_isatty"),
    translated<lseek>("_lseek"),
    translated<pipe>("_pipe"),
    translated<pread>("_pread"),
    translated<pwrite>("_pwrite"),
    translated<read>("_read"),
    translated<static_cast<ssize_t (*)(int, const void*, size_t)>(write)>("_write"),
};
const SupplyTable kDescriptorTable = tableOf(kDescriptors);

}  // namespace macrun
