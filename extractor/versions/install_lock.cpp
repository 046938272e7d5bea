#include "extractor/versions/install_lock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <string>
#include <vector>

#include "support/failure/failure.h"
#include "support/files/folder_walk.h"
#include "support/files/paths.h"
#include "support/log/logging.h"
#include "support/owned.h"

// Every user of the shared folder may be the next installer, so the file is made writable for all;
// but not a file that somebody else put in its place.
static void openToEveryone(int handle) {
  struct stat status {};
  if (fstat(handle, &status) == 0 && S_ISREG(status.st_mode) && status.st_nlink == 1 &&
      status.st_uid == geteuid()) {
    fchmod(handle, 0666);
  }
}

static int openLockFile(const char* masterFolder) {
  const std::string path = childPath(masterFolder, "QVAppsSharedConfig");
  const Descriptor folder(open(path.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
  if (!folder.isOpen()) {
    return -1;
  }
  const int flags = O_RDONLY | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC;
  const int handle = openat(folder.get(), "InstallLock", flags, 0666);
  if (handle >= 0) {
    openToEveryone(handle);
  }
  return handle;
}

// The lock that this process holds, to be released before an alert that may stay for hours.
static InstallLock* currentLock = nullptr;

static void releaseCurrentLock() {
  if (currentLock != nullptr) {
    currentLock->release();
  }
}

// Number of attempts to get the lock, ten times a second.
static int triesOf(InstallLock::Wait wait) {
  if (wait == InstallLock::Wait::Never) {
    return 0;
  }
  return wait == InstallLock::Wait::OneMinute ? 600 : 6000;
}

InstallLock::InstallLock(const char* masterFolder, Wait wait)
    : handle_(openLockFile(masterFolder)) {
  constexpr useconds_t kPauseMicroseconds = 100000;
  const int tries = triesOf(wait);
  for (int i = 0; handle_ >= 0 && flock(handle_, LOCK_EX | LOCK_NB) != 0; ++i) {
    if (errno == EINTR) {
      continue;
    }
    if (errno != EWOULDBLOCK) {
      release();
    } else if (i >= tries) {
      giveUp(wait);
    } else {
      if (i == 0) {
        logMessage("[Extractor] Another installer is at work, waiting for it\n");
      }
      usleep(kPauseMicroseconds);
    }
  }
  currentLock = this;
  setBeforeAlert(releaseCurrentLock);
}

void InstallLock::giveUp(Wait wait) {
  if (wait != Wait::Never) {
    logMessage("[Extractor] The other installer does not end, will not wait any longer\n");
  }
  anothers_ = true;
  release();
}

InstallLock::~InstallLock() {
  setBeforeAlert(nullptr);
  currentLock = nullptr;
  release();
}

void InstallLock::release() {
  if (handle_ >= 0) {
    close(handle_);
    handle_ = -1;
  }
}

// The inode differs if the folder has been replaced by another one.
static std::string describe(const dirent& entry) {
  return entry.d_name + (' ' + std::to_string(entry.d_ino));
}

std::string versionFoldersIn(const char* masterFolder) {
  std::vector<std::string> descriptions;
  const Folder folder = openFolder(masterFolder);
  while (const dirent* entry = folder == nullptr ? nullptr : readdir(folder.get())) {
    if (std::string(entry->d_name).find("-complete") != std::string::npos) {
      descriptions.push_back(describe(*entry));
    }
  }
  std::sort(descriptions.begin(), descriptions.end());
  std::string all;
  for (const std::string& description : descriptions) {
    all += description + '/';
  }
  return all;
}
