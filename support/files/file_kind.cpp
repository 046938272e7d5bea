#include "support/files/file_kind.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

// The file type of `path`, 0 if it does not exist.
static mode_t kindOf(const char* path) {
  struct stat status {};
  return lstat(path, &status) == 0 ? status.st_mode & S_IFMT : 0;
}

static mode_t kindBehindLinks(const char* path) {
  struct stat status {};
  return stat(path, &status) == 0 ? status.st_mode & S_IFMT : 0;
}

bool exists(const char* path) {
  return kindOf(path) != 0;
}

// Whether a failed lstat()'s error number means that nothing exists.
static bool saysMissing(int error) {
  return error == ENOENT || error == ENOTDIR;
}

bool isDefinitelyMissing(const char* path) {
  struct stat status {};
  return lstat(path, &status) != 0 && saysMissing(errno);
}

// The same for stat(), which follows links.
static bool saysMissingOrBroken(int error) {
  return saysMissing(error) || error == ELOOP;
}

bool isMissingOrBrokenLink(const char* path) {
  struct stat status {};
  return stat(path, &status) != 0 && saysMissingOrBroken(errno);
}

bool isLink(const char* path) {
  return kindOf(path) == S_IFLNK;
}

bool isFolder(const char* path) {
  return kindOf(path) == S_IFDIR;
}

bool leadsToFolder(const char* path) {
  return kindBehindLinks(path) == S_IFDIR;
}

bool isRegularFile(const char* path) {
  return kindOf(path) == S_IFREG;
}

bool lacksContent(const char* path) {
  struct stat status {};
  if (stat(path, &status) != 0) {
    return saysMissingOrBroken(errno);
  }
  return !S_ISREG(status.st_mode) || status.st_size == 0;
}

bool isExecutable(const char* path) {
  return kindBehindLinks(path) == S_IFREG && access(path, X_OK) == 0;
}

bool isKnownNotExecutable(const char* path) {
  struct stat status {};
  if (stat(path, &status) != 0) {
    return saysMissingOrBroken(errno);
  }
  return !S_ISREG(status.st_mode) || (access(path, X_OK) != 0 && errno == EACCES);
}
