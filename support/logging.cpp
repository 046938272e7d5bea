#include "support/logging.h"

#include <cstdarg>
#include <cstdlib>
#include <ctime>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "support/clock.h"
#include "support/file_operations.h"
#include "support/owned.h"
#include "support/paths.h"
#include "support/system_log.h"

FILE* fileToLogTo = nullptr;
uint64_t lastTimestamp = 0;

static const char kErrorRule[] = "*******************************************\n";
static const char kStartRule[] = "++++++++++++++++++++++++++++++++++++++++++++++++\n";
static const char kEndRule[] = "------------------------------------------------\n";

__attribute__((format(printf, 3, 0))) static void writePrefixed(FILE* sink, uint64_t elapsed,
                                                                const char* format,
                                                                va_list arguments) {
  fprintf(sink, "+%-8llu ", static_cast<unsigned long long>(elapsed));
  vfprintf(sink, format, arguments);
}

__attribute__((format(printf, 1, 0))) static void writeToSystemLog(const char* format,
                                                                   va_list arguments) {
  char* text = nullptr;
  if (vasprintf(&text, format, arguments) < 0) {
    return;
  }
  writeSystemLog(text);
  free(text);
}

__attribute__((format(printf, 1, 0))) static void logArguments(const char* format,
                                                               va_list arguments) {
  const uint64_t now = systemTimeMillis();
  const uint64_t elapsed = lastTimestamp == 0 ? 0 : now - lastTimestamp;
  va_list copy;
  if (fileToLogTo != nullptr) {
    va_copy(copy, arguments);
    writePrefixed(fileToLogTo, elapsed, format, copy);
    va_end(copy);
    fflush(fileToLogTo);
  }
  va_copy(copy, arguments);
  writePrefixed(stdout, elapsed, format, copy);
  va_end(copy);
  fflush(stdout);
  fflush(stderr);
  lastTimestamp = systemTimeMillis();
  va_copy(copy, arguments);
  writeToSystemLog(format, copy);
  va_end(copy);
}

void logMessage(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  logArguments(format, arguments);
  va_end(arguments);
}

void logError(const char* format, ...) {
  logMessage("%s", kErrorRule);
  va_list arguments;
  va_start(arguments, format);
  logArguments(format, arguments);
  va_end(arguments);
  logMessage("%s", kErrorRule);
  fflush(stdout);
  fflush(stderr);
}

void logStartSection(const char* name) {
  logMessage("%s", kStartRule);
  logMessage("+++ Start: %s\n", name);
  logMessage("%s", kStartRule);
}

void logEndSection(const char* name) {
  logMessage("%s", kEndRule);
  logMessage("--- End: %s\n", name);
  logMessage("%s", kEndRule);
}

void setFileToLogTo(FILE* file) {
  fileToLogTo = file;
}

void closeLoggedFile() {
  logMessage("[Utils] Closing logging file.\n");
  if (fileToLogTo != nullptr) {
    fclose(fileToLogTo);
    fileToLogTo = nullptr;
  }
}

// Writes "YYYY-MM-DD-HH-MM-SS-mmm.log", local time, into the `size` bytes at `name`.
static void formatLogFileName(char* name, size_t size) {
  const time_t now = time(nullptr);
  tm local{};
  localtime_r(&now, &local);
  const size_t length = strftime(name, size, "%Y-%m-%d-%H-%M-%S", &local);
  // Formatting the buffer into itself would drop the stamp on some C libraries; append instead.
  snprintf(name + length, size - length, "-%03d.log", getJustMillis());
}

// The master folder is open to every user: what stands under the name of the folder or the file may
// be a link that somebody planted. Only a file of its own in a folder of its own is written.
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

void setupFileLogging(const char* baseDir) {
  char name[1024] = "";
  formatLogFileName(name, sizeof name);
  char path[PATH_BUFFER_SIZE];
  setPath(path, baseDir, "logs");
  makeDir(baseDir);
  makeDir(path);
  char fileName[sizeof name + sizeof "Wrapper-"];
  snprintf(fileName, sizeof fileName, "Wrapper-%s", name);
  char filePath[PATH_BUFFER_SIZE];
  logMessage("[Extractor] Logging to %s\n", setPath(filePath, path, fileName));
  setFileToLogTo(createLogFile(path, fileName));
}

void printWorkingDir() {
  char* folder = static_cast<char*>(calloc(1024, 1));
  if (folder != nullptr && getcwd(folder, 1024) == nullptr) {
    folder[0] = 0;
  }
  logMessage("[Extractor] Working dir is '%s'\n", folder == nullptr ? "" : folder);
  free(folder);
}
