#include "tools/system/temporary_folder.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>  // IWYU pragma: keep, a Mac declares mkdtemp() there

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <vector>

#include "tools/system/input_error.h"
#include "tools/system/texts.h"

namespace fs = std::filesystem;

namespace tools {

static const char kPrefix[] = "quorvane-";
static const char kLockEnd[] = ".lock";
static const mode_t kOwnerOnly = 0600;

static fs::path placeFor(const std::string& parent) {
  std::error_code ignored;
  const fs::path folder = parent.empty() ? fs::temp_directory_path(ignored) : fs::path(parent);
  return folder.empty() ? "/tmp" : folder;  // TMPDIR is not a folder
}

// Makes folder and lock. Returns false if another process has just taken the folder for abandoned.
bool TemporaryFolder::make(const std::string& parent) {
  path_ = (placeFor(parent) / (std::string(kPrefix) + "XXXXXX")).string();
  if (mkdtemp(path_.data()) == nullptr) {
    throw InputError("cannot create the temporary folder " + path_ + ": " + strerror(errno));
  }
  const std::string lock = path_ + kLockEnd;
  lock_ = Descriptor(open(lock.c_str(), O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW, kOwnerOnly));
  if (lock_.get() < 0) {
    const int error = errno;
    rmdir(path_.c_str());
    throw InputError("cannot create " + lock + ": " + strerror(error));
  }
  struct stat status {};
  return flock(lock_.get(), LOCK_EX | LOCK_NB) == 0 && fstat(lock_.get(), &status) == 0 &&
         status.st_nlink > 0;
}

TemporaryFolder::TemporaryFolder(const std::string& parent) {
  while (!make(parent)) {
  }
}

TemporaryFolder::~TemporaryFolder() {
  std::error_code ignored;
  fs::remove_all(path_, ignored);
  unlink((path_ + kLockEnd).c_str());
}

// A lock is made after its folder and removed after it: one without a folder is of a process that
// was killed in between.
static void removeLoneLock(const std::string& path) {
  struct stat status {};
  if (lstat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode) && status.st_uid == geteuid()) {
    unlink(path.c_str());
  }
}

// Removes the folder `path` if nobody holds its lock.
static void removeIfAbandoned(const std::string& path) {
  const std::string lockPath = path + kLockEnd;
  struct stat folder {};
  if (lstat(path.c_str(), &folder) != 0) {
    removeLoneLock(lockPath);
    return;
  }
  if (!S_ISDIR(folder.st_mode) || folder.st_uid != geteuid()) {
    return;
  }
  const Descriptor lock(open(lockPath.c_str(), O_RDWR | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK));
  struct stat status {};
  if (lock.get() < 0 || fstat(lock.get(), &status) != 0 || !S_ISREG(status.st_mode) ||
      status.st_uid != geteuid() || flock(lock.get(), LOCK_EX | LOCK_NB) != 0) {
    return;
  }
  std::error_code ignored;
  fs::remove_all(path, ignored);
  unlink(lockPath.c_str());
}

void removeAbandonedFolders(const std::string& parent) {
  std::error_code ignored;
  std::vector<std::string> paths;
  for (const auto& entry : fs::directory_iterator(placeFor(parent), ignored)) {
    const std::string name = entry.path().filename();
    if (startsWith(name, kPrefix) && endsWith(name, kLockEnd)) {
      const std::string path = entry.path();
      paths.push_back(path.substr(0, path.size() - strlen(kLockEnd)));
    }
  }
  for (const std::string& path : paths) {
    removeIfAbandoned(path);
  }
}

}  // namespace tools
