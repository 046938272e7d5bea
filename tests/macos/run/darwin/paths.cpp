#include <fcntl.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>

#include "tests/macos/run/darwin/errors.h"
#include "tests/macos/run/darwin/files.h"
#include "tests/macos/run/stop.h"
#include "tests/macos/run/supply/tables.h"

// Calls that take paths.

namespace macrun {

// unlink() of a folder is forbidden there; Linux says that it is a folder.
static int unlinkResult(int result) {
  return result != 0 && darwinErrno() == darwin::kEISDIR ? failWith(darwin::kEPERM) : result;
}

static int removeFile(const char* path) {
  return isPathShort(path) ? unlinkResult(translating([&] { return unlink(path); })) : -1;
}

static int removeAt(int folder, const char* path, int flags) {
  if ((flags & ~kDarwinRemoveFolder) != 0) {
    giveUp("unlinkat: flags %#x are not supported", static_cast<unsigned>(flags));
  }
  if (!isPathShort(path)) {
    return -1;
  }
  const int linux = flags != 0 ? AT_REMOVEDIR : 0;
  return unlinkResult(translating([&] { return unlinkat(fromDarwinFolder(folder), path, linux); }));
}

static int renameFile(const char* from, const char* to) {
  if (!isPathShort(from) || !isPathShort(to)) {
    return -1;
  }
  return translating([&] { return rename(from, to); });
}

static int renameAt(int fromFolder, const char* from, int toFolder, const char* to) {
  if (!isPathShort(from) || !isPathShort(to)) {
    return -1;
  }
  return translating(
      [&] { return renameat(fromDarwinFolder(fromFolder), from, fromDarwinFolder(toFolder), to); });
}

// RENAME_SWAP and RENAME_EXCL of <sys/stdio.h>.
constexpr unsigned kSwap = 2, kExclusive = 4;

static int renameAtWith(int fromFolder, const char* from, int toFolder, const char* to,
                        unsigned flags) {
  if ((flags & ~(kSwap | kExclusive)) != 0) {
    giveUp("renamex_np: flags %#x are not supported", flags);
  }
  if (!isPathShort(from) || !isPathShort(to)) {
    return -1;
  }
  const unsigned linux = ((flags & kSwap) != 0 ? RENAME_EXCHANGE : 0u) |
                         ((flags & kExclusive) != 0 ? RENAME_NOREPLACE : 0u);
  return translating([&] {
    return renameat2(fromDarwinFolder(fromFolder), from, fromDarwinFolder(toFolder), to, linux);
  });
}

static int renameWith(const char* from, const char* to, unsigned flags) {
  return renameAtWith(kDarwinWorkingFolder, from, kDarwinWorkingFolder, to, flags);
}

static int makeLink(const char* target, const char* path) {
  return isPathShort(path) ? translating([&] { return symlink(target, path); }) : -1;
}

static int makeLinkAt(const char* target, int folder, const char* path) {
  return isPathShort(path)
             ? translating([&] { return symlinkat(target, fromDarwinFolder(folder), path); })
             : -1;
}

static ssize_t readLinkAt(int folder, const char* path, char* target, size_t size) {
  return isPathShort(path)
             ? translating([&] { return readlinkat(fromDarwinFolder(folder), path, target, size); })
             : -1;
}

static int makeNameAt(int fromFolder, const char* from, int toFolder, const char* to, int flags) {
  if (!isPathShort(from) || !isPathShort(to)) {
    return -1;
  }
  const int linux = (flags & kDarwinFollow) != 0 ? AT_SYMLINK_FOLLOW : 0;
  return translating([&] {
    return linkat(fromDarwinFolder(fromFolder), from, fromDarwinFolder(toFolder), to, linux);
  });
}

static int makeFolderAt(int folder, const char* path, mode_t mode) {
  return isPathShort(path)
             ? translating([&] { return mkdirat(fromDarwinFolder(folder), path, mode); })
             : -1;
}

static int accessAt(int folder, const char* path, int mode, int flags) {
  return isPathShort(path) ? translating([&] {
    return faccessat(fromDarwinFolder(folder), path, mode, fromDarwinAtFlags(flags));
  })
                           : -1;
}

static int chmodAt(int folder, const char* path, mode_t mode, int flags) {
  return isPathShort(path) ? translating([&] {
    return fchmodat(fromDarwinFolder(folder), path, mode, fromDarwinAtFlags(flags));
  })
                           : -1;
}

static char* resolvePath(const char* path, char* resolved) {
  return isPathShort(path) ? translating([&] { return realpath(path, resolved); }) : nullptr;
}

static constexpr Supplied kPaths[] = {
    onPath<access>("_access"),
    onPath<chdir>("_chdir"),
    onPath<chmod>("_chmod"),
    onPath<chown>("_chown"),
    function<accessAt>("_faccessat"),
    function<chmodAt>("_fchmodat"),
    translated<getcwd>("_getcwd"),
    onPath<lchown>("_lchown"),
    onPath<link>("_link"),
    function<makeNameAt>("_linkat"),
    onPath<mkdir>("_mkdir"),
    function<makeFolderAt>("_mkdirat"),
    translated<mkdtemp>("_mkdtemp"),
    translated<mkstemp>("_mkstemp"),
    onPath<readlink>("_readlink"),
    function<readLinkAt>("_readlinkat"),
    function<resolvePath>("_realpath$DARWIN_EXTSN"),
    onPath<static_cast<int (*)(const char*)>(remove)>("_remove"),
    function<renameFile>("_rename"),
    function<renameAt>("_renameat"),
    function<renameAtWith>("_renameatx_np"),
    function<renameWith>("_renamex_np"),
    onPath<rmdir>("_rmdir"),
    function<makeLink>("_symlink"),
    function<makeLinkAt>("_symlinkat"),
    onPath<truncate>("_truncate"),
    function<removeFile>("_unlink"),
    function<removeAt>("_unlinkat"),
};
const SupplyTable kPathTable = tableOf(kPaths);

}  // namespace macrun
