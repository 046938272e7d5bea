#include "support/log/logging.h"

#include <cstdarg>
#include <cstdlib>
#include <string>

#include <fcntl.h>
#include <pthread.h>
#include <unistd.h>

#include "support/log/clock.h"
#include "support/log/system_log.h"
#include "support/owned.h"

FILE* fileToLogTo = nullptr;
uint64_t lastTimestamp = 0;

static const char kErrorRule[] = "*******************************************\n";
static const char kStartRule[] = "++++++++++++++++++++++++++++++++++++++++++++++++\n";
static const char kEndRule[] = "------------------------------------------------\n";
// Maximum number of bytes kept for a log file.
static const size_t kEarlyLimit = 256 * 1024;

// The Launcher closes the file on its launch thread while the main thread may be logging.
static pthread_mutex_t fileLock = PTHREAD_MUTEX_INITIALIZER;

static bool isFileAlone = false;
// Standard output while nothing may be written there.
static int ownOutput = -1;

namespace {

class FileGuard {
 public:
  FileGuard() { pthread_mutex_lock(&fileLock); }
  ~FileGuard() { pthread_mutex_unlock(&fileLock); }
  FileGuard(const FileGuard&) = delete;
  FileGuard& operator=(const FileGuard&) = delete;
};

}  // namespace

// Messages logged before a file was set, or null if nothing is kept. `lost` is the number of
// messages that did not fit.
static std::string* earlyLines = nullptr;
static unsigned long lost = 0;

__attribute__((format(printf, 3, 0))) static void writePrefixed(FILE* sink, uint64_t elapsed,
                                                                const char* format,
                                                                va_list arguments) {
  fprintf(sink, "+%-8llu ", static_cast<unsigned long long>(elapsed));
  vfprintf(sink, format, arguments);
}

__attribute__((format(printf, 2, 0))) static void keepEarlyLine(uint64_t elapsed,
                                                                const char* format,
                                                                va_list arguments) {
  char* text = nullptr;
  if (vasprintf(&text, format, arguments) < 0) {
    return;
  }
  char prefix[32];
  snprintf(prefix, sizeof prefix, "+%-8llu ", static_cast<unsigned long long>(elapsed));
  const std::string line = std::string(prefix) + text;
  free(text);
  if (line.size() <= kEarlyLimit - earlyLines->size()) {
    *earlyLines += line;
  } else {
    ++lost;
  }
}

__attribute__((format(printf, 2, 0))) static void writeToFile(uint64_t elapsed, const char* format,
                                                              va_list arguments) {
  const FileGuard guard;
  if (fileToLogTo != nullptr) {
    writePrefixed(fileToLogTo, elapsed, format, arguments);
    fflush(fileToLogTo);
  } else if (earlyLines != nullptr) {
    keepEarlyLine(elapsed, format, arguments);
  }
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
  va_copy(copy, arguments);
  writeToFile(elapsed, format, copy);
  va_end(copy);
  if (isFileAlone) {
    lastTimestamp = systemTimeMillis();
    return;
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

void logToFileAlone() {
  isFileAlone = true;
  const Descriptor nowhere(open("/dev/null", O_WRONLY | O_CLOEXEC));
  ownOutput = fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
  if (nowhere.isOpen() && ownOutput >= 0) {
    dup2(nowhere.get(), STDOUT_FILENO);
  }
}

static void giveOutputBack() {
  if (ownOutput >= 0) {
    fflush(stdout);
    dup2(ownOutput, STDOUT_FILENO);
    close(ownOutput);
    ownOutput = -1;
  }
}

void keepEarlyLines() {
  const FileGuard guard;
  if (earlyLines == nullptr) {
    earlyLines = new std::string;
  }
}

static void writeEarlyLines(FILE* file) {
  fputs(earlyLines->c_str(), file);
  if (lost > 0) {
    fprintf(file, "(%lu messages did not fit here)\n", lost);
  }
  fflush(file);
}

void revealKeptLines() {
  const FileGuard guard;
  if (isFileAlone && earlyLines != nullptr) {
    writeEarlyLines(stderr);
    earlyLines->clear();
  }
}

void setFileToLogTo(FILE* file) {
  const FileGuard guard;
  if (isFileAlone && earlyLines != nullptr && file == nullptr) {
    return;  // there is no other place for them, should this run fail
  }
  if (earlyLines != nullptr && file != nullptr) {
    writeEarlyLines(file);
  }
  delete earlyLines;
  earlyLines = nullptr;
  fileToLogTo = file;
}

void closeLoggedFile() {
  logMessage("[Utils] Closing logging file.\n");
  const FileGuard guard;
  if (fileToLogTo != nullptr) {
    fclose(fileToLogTo);
    fileToLogTo = nullptr;
  }
  if (isFileAlone && earlyLines == nullptr) {
    earlyLines = new std::string;  // nothing else says why this run fails, should it fail now
    lost = 0;
  }
  giveOutputBack();
}

void printWorkingDir() {
  char* folder = static_cast<char*>(calloc(1024, 1));
  if (folder != nullptr && getcwd(folder, 1024) == nullptr) {
    folder[0] = 0;
  }
  logMessage("[Extractor] Working dir is '%s'\n", folder == nullptr ? "" : folder);
  free(folder);
}
