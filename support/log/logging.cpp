#include "support/log/logging.h"

#include <algorithm>
#include <cstdarg>
#include <cstdlib>
#include <cstring>
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

namespace {

// A message behind its prefix, formatted once for all sinks. `longer` has it if `own` is too small.
struct Line {
  char own[2048];
  Block<char> longer;
  const char* bytes;
  size_t prefix;
  size_t size;
};

}  // namespace

// Returns whether the message could be formatted. One for which there is no memory is cut.
__attribute__((format(printf, 3, 0))) static bool formatLine(Line* line, uint64_t elapsed,
                                                             const char* format,
                                                             va_list arguments) {
  line->prefix = static_cast<size_t>(
      snprintf(line->own, sizeof line->own, "+%-8llu ", static_cast<unsigned long long>(elapsed)));
  const size_t room = sizeof line->own - line->prefix;
  va_list copy;
  va_copy(copy, arguments);
  const int length = vsnprintf(line->own + line->prefix, room, format, copy);
  va_end(copy);
  if (length < 0) {
    return false;
  }
  line->bytes = line->own;
  line->size = line->prefix + std::min(static_cast<size_t>(length), room - 1);
  if (static_cast<size_t>(length) < room) {
    return true;
  }
  const size_t size = line->prefix + static_cast<size_t>(length);
  line->longer.reset(static_cast<char*>(malloc(size + 1)));
  if (line->longer != nullptr) {
    memcpy(line->longer.get(), line->own, line->prefix);
    vsnprintf(line->longer.get() + line->prefix, size + 1 - line->prefix, format, arguments);
    line->bytes = line->longer.get();
    line->size = size;
  }
  return true;
}

static void keepEarlyLine(const Line& line) {
  if (line.size <= kEarlyLimit - earlyLines->size()) {
    earlyLines->append(line.bytes, line.size);
  } else {
    ++lost;
  }
}

// Every line is flushed, so that the stream's buffer is empty and a line is one write.
static void writeLine(FILE* sink, const Line& line) {
  fwrite(line.bytes, 1, line.size, sink);
  fflush(sink);
}

static void writeToFile(const Line& line) {
  const FileGuard guard;
  if (fileToLogTo != nullptr) {
    writeLine(fileToLogTo, line);
  } else if (earlyLines != nullptr) {
    keepEarlyLine(line);
  }
}

__attribute__((format(printf, 1, 0))) static void logArguments(const char* format,
                                                               va_list arguments) {
  const uint64_t now = systemTimeMillis();
  Line line;
  if (!formatLine(&line, lastTimestamp == 0 ? 0 : now - lastTimestamp, format, arguments)) {
    return;
  }
  writeToFile(line);
  if (!isFileAlone) {
    writeLine(stdout, line);
    fflush(stderr);
  }
  lastTimestamp = systemTimeMillis();
  if (!isFileAlone) {
    writeSystemLog(line.bytes + line.prefix);
  }
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
  fwrite(earlyLines->data(), 1, earlyLines->size(), file);
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
