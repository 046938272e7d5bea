#include "support/failure/failure.h"

#include <sys/statvfs.h>

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <string>

#include "platform/process_end.h"
#include "support/failure/failure_alert.h"
#include "support/log/logging.h"
#include "support/process/process_start.h"

static const size_t kLongestName = 80;

// With less free space than this, a disk counts as full if the error number is unknown.
static const unsigned long long kFullBelow = 64 * 1024;

static std::atomic<Failure> notedFailure{Failure::NotStarted};
static std::atomic<int> statusOfFailure{-1};
static std::atomic<bool> alertAllowed{true};
static std::atomic<bool> alertShown{false};
static void (*beforeAlert)() = nullptr;
static int (*endOfFailures)(int, Failure) = nullptr;
static char alertName[kLongestName + 4] = "";

void noteFailure(Failure failure) {
  notedFailure = failure;
}

void allowAlert(bool allowed) {
  alertAllowed = allowed;
}

bool isAlertAllowed() {
  return alertAllowed && isStartedByDesktop();
}

// Truncates the text at `length`, or before a UTF-8 character that would be incomplete.
static std::string cutText(const std::string& text, size_t length) {
  if (text.size() <= length) {
    return text;
  }
  while (length > 0 && (text[length] & 0xC0) == 0x80) {
    --length;
  }
  return text.substr(0, length) + "...";
}

void setAlertName(const char* name) {
  snprintf(alertName, sizeof alertName, "%s", cutText(name, kLongestName).c_str());
}

void setBeforeAlert(void (*function)()) {
  beforeAlert = function;
}

void setEndOfFailures(int (*function)(int status, Failure failure)) {
  endOfFailures = function;
}

static void showAlert(Failure failure) {
  // Only once, in case the alert itself fails.
  if (!isAlertAllowed() || alertShown.exchange(true)) {
    return;
  }
  fflush(stdout);
  if (beforeAlert != nullptr) {
    beforeAlert();
  }
  showFailureAlert({failure, alertName, loggedFilePath()});
}

void endIfFailing() {
  if (statusOfFailure >= 0) {
    endProcess(statusOfFailure);
  }
}

void failProcess(int status, Failure failure) {
  if (endOfFailures != nullptr) {
    status = endOfFailures(status, failure);
  }
  statusOfFailure = status;
  revealKeptLines();
  showAlert(failure);
  endProcess(status);
}

void endWithResult(int status) {
  if (status != 0) {
    failProcess(status, notedFailure);
  }
  endProcess(0);
}

void endWithZeroAfter(int result) {
  if (result != 0) {
    failProcess(0, notedFailure);
  }
  endProcess(0);
}

static bool isFull(const char* path) {
  struct statvfs space {};
  return statvfs(path, &space) == 0 && (space.f_flag & ST_RDONLY) == 0 &&
         static_cast<unsigned long long>(space.f_bavail) * space.f_frsize < kFullBelow;
}

Failure failureOfWriting(int error, const char* path) {
  const bool known = error == ENOSPC || error == EDQUOT;
  return known || (error == 0 && isFull(path)) ? Failure::DiskFull : Failure::FolderNotWritable;
}
