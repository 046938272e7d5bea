#include "platform/gnustep/download/partial_file.h"

#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <system_error>

PartialFile::~PartialFile() {
  discard();
}

static const char kPart[] = ".part-";

static bool isOfDeadProcess(const char* number) {
  const int process = atoi(number);
  return process > 0 && kill(process, 0) != 0 && errno == ESRCH;
}

// A process that was killed in the middle of a download could not remove its file.
static void removePartsOfDeadProcesses(const std::string& target) {
  const size_t slash = target.rfind('/');
  const std::string folder = slash == std::string::npos ? "." : target.substr(0, slash + 1);
  const std::string start = target.substr(slash + 1) + kPart;
  std::error_code error;
  std::filesystem::directory_iterator entry(folder, error);
  for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
    const std::string name = entry->path().filename();
    if (name.compare(0, start.size(), start) == 0 && isOfDeadProcess(name.c_str() + start.size())) {
      unlink(entry->path().c_str());
    }
  }
}

bool PartialFile::create(const std::string& target) {
  static std::atomic<unsigned> count{0};
  removePartsOfDeadProcesses(target);
  target_ = target;
  path_ = target + kPart + std::to_string(getpid()) + "-" + std::to_string(count++);
  // A leftover of an earlier process with this number; anything else makes the open fail.
  unlink(path_.c_str());
  handle_ = open(path_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0666);
  return handle_ >= 0;
}

bool PartialFile::write(const char* bytes, size_t size) {
  while (size > 0) {
    const ssize_t written = ::write(handle_, bytes, size);
    if (written < 0 && errno == EINTR) {
      continue;
    }
    if (written < 0) {
      return false;
    }
    bytes += written;
    size -= static_cast<size_t>(written);
  }
  return true;
}

bool PartialFile::complete(bool replace) {
  const int closed = close(handle_);
  handle_ = -1;
  const bool moved = closed == 0 && (replace ? rename(path_.c_str(), target_.c_str()) == 0
                                             : link(path_.c_str(), target_.c_str()) == 0);
  if (!moved || !replace) {
    const int reason = errno;
    unlink(path_.c_str());
    errno = reason;
  }
  return moved;
}

void PartialFile::discard() {
  if (handle_ < 0) {
    return;
  }
  close(handle_);
  handle_ = -1;
  unlink(path_.c_str());
}
