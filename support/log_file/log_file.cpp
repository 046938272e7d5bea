#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <ctime>

#include "support/files/file_operations.h"
#include "support/files/paths.h"
#include "support/log/clock.h"
#include "support/log/logging.h"
#include "support/log_file/old_logs.h"
#include "support/owned.h"

static char logFilePath[PATH_BUFFER_SIZE] = "";

// Writes "YYYY-MM-DD-HH-MM-SS-mmm.log", local time, into the `size` bytes at `name`.
static void formatLogFileName(char* name, size_t size) {
  const time_t now = time(nullptr);
  tm local{};
  localtime_r(&now, &local);
  const size_t length = strftime(name, size, "%Y-%m-%d-%H-%M-%S", &local);
  // Formatting the buffer into itself would drop the stamp on some C libraries; append instead.
  snprintf(name + length, size - length, "-%03d.log", getJustMillis());
}

// The master folder is writable by every user: the folder or the file may be a planted link. Only a
// file owned by this user, in a folder owned by this user, is written.
static FILE* createLogFile(const char* folderPath, const char* name) {
  const Descriptor folder(open(folderPath, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
  if (!folder.isOpen()) {
    return nullptr;
  }
  const int flags = O_WRONLY | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC;
  Descriptor file(openat(folder.get(), name, flags, 0666));
  struct stat status {};
  if (!file.isOpen() || fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode) ||
      status.st_nlink != 1 || ftruncate(file.get(), 0) != 0) {
    return nullptr;
  }
  FILE* stream = fdopen(file.get(), "w");
  if (stream != nullptr) {
    file.release();
  }
  return stream;
}

// Opens a new log file whose name begins with `prefix`, and writes its path into `folder` and its
// name into the `size` bytes at `fileName`.
static void openLogFile(const char* baseDir, const char* prefix, const char* tag, char* folder,
                        char* fileName, size_t size) {
  char name[1024] = "";
  formatLogFileName(name, sizeof name);
  setPath(folder, baseDir, "logs");
  makeDir(baseDir);
  makeDir(folder);
  snprintf(fileName, size, "%s%s", prefix, name);
  char path[PATH_BUFFER_SIZE];
  logMessage("[%s] Logging to %s\n", tag, setPath(path, folder, fileName));
  FILE* file = createLogFile(folder, fileName);
  setFileToLogTo(file);
  setPath(logFilePath, file == nullptr ? "" : path);
}

void setupFileLogging(const char* baseDir) {
  char folder[PATH_BUFFER_SIZE];
  char fileName[1100];
  openLogFile(baseDir, "Wrapper-", "Extractor", folder, fileName, sizeof fileName);
}

static void setupLimitedLogging(const char* baseDir, const char* prefix, const char* tag,
                                int count) {
  char folder[PATH_BUFFER_SIZE];
  char fileName[1100];
  openLogFile(baseDir, prefix, tag, folder, fileName, sizeof fileName);
  removeOldLogs(folder, prefix, fileName, count);
}

void setupLauncherLogging(const char* baseDir) {
  setupLimitedLogging(baseDir, "Launcher-", "Launcher", LAUNCHER_LOG_COUNT);
}

void setupInstallLogging(const char* baseDir) {
  setupLimitedLogging(baseDir, "Install-", "Extractor", INSTALL_LOG_COUNT);
}

const char* loggedFilePath() {
  return logFilePath;
}
