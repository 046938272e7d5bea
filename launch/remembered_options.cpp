#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "launch/launch_properties.h"
#include "launch/launch_steps.h"
#include "launch/retry.h"
#include "launcher/jvm/host_options.h"
#include "platform/java_command.h"
#include "support/encoding/field_reader.h"
#include "support/log/logging.h"

// The file outlives every version of the application, so nothing in it may keep one from starting:
// what can be used is used, the rest is logged.

static const int kLoggedCharacters = 99;
static const size_t kLongestOption = DEFAULT_FIELD_LIMIT - 2;
static const size_t kMostBytes = 1 << 20;  // far more than the launch properties hold

// Opens the options file without waiting for the writer of a pipe.
static Stream openForReading(const char* path) {
  Descriptor file(open(path, O_RDONLY | O_NONBLOCK | O_CLOEXEC));
  Stream stream(file.isOpen() ? fdopen(file.get(), "rb") : nullptr);
  if (stream != nullptr) {
    file.release();
  }
  return stream;
}

// Opens the options file, trying again while it exists but cannot be opened; null after an error
// line.
static Stream openOptionsFile(const char* path) {
  logMessage("[Extractor] Reading %s\n", path);
  Stream file = openForReading(path);
  const bool worthRetrying = file == nullptr && errno != ENOENT && errno != ENOTDIR;
  for (int attempt = 0; worthRetrying && file == nullptr && attempt < RETRY_COUNT; ++attempt) {
    logMessage("[Extractor] LSO file does exist. Retrying (%d)...", attempt);
    file = openForReading(path);
    if (file == nullptr) {
      pauseBeforeRetry(RETRY_SECONDS);
    }
  }
  if (file == nullptr) {
    logError("JRE LSO file does not exist\n");
  }
  return file;
}

static bool isPlain(FILE* file) {
  struct stat status {};
  return fstat(fileno(file), &status) == 0 && S_ISREG(status.st_mode);
}

static void logOption(const char* key, const std::string& option) {
  if (option.size() > kLoggedCharacters) {
    logMessage("[Extractor] Launch Prop: %s = %s...\n", key,
               option.substr(0, kLoggedCharacters).c_str());
  } else {
    logMessage("[Extractor] Launch Prop: %s = %s\n", key, option.c_str());
  }
}

static bool isForCommandLine(const char* option) {
  return takesJavaCommandHostOptions() || !isForHostOnly(option);
}

static void addRememberedOption(Launch* launch, const std::string& option, size_t index) {
  if (isForCommandLine(option.c_str())) {
    appendText(&launch->commandLine, option.c_str());
  }
  appendText(&launch->jvmOptions, option.c_str());
  const std::string key = "jvm_options_" + std::to_string(index);
  logOption(key.c_str(), option);
  addStatic(launch, key.c_str(), option.c_str());
}

// Returns the texts of the file, each ended by a zero byte or by the end of the file.
static std::vector<std::string> readTexts(FILE* file) {
  std::string bytes(kMostBytes, '\0');
  bytes.resize(fread(bytes.data(), 1, bytes.size(), file));
  if (ferror(file) != 0) {
    logError("JRE LSO file cannot be read to its end\n");
    bytes.erase(bytes.rfind('\0') + 1);
  }
  std::vector<std::string> texts;
  for (size_t at = 0; at < bytes.size(); at += texts.back().size() + 1) {
    texts.emplace_back(bytes.c_str() + at);
  }
  return texts;
}

// Returns why `text` is not an option, or null. An option's value may follow it as a separate text.
static const char* faultOfOption(const std::string& text, const std::string& before) {
  if (text.empty()) {
    return "it is empty";
  }
  if (text.size() > kLongestOption) {
    return "it is too long";
  }
  if (text[0] != '-' && before.compare(0, 2, "--") != 0) {
    return "it does not begin with a dash";
  }
  return nullptr;
}

// Returns those of the counted texts that are options.
static std::vector<std::string> optionsAmong(const std::vector<std::string>& texts, long count) {
  const size_t there = texts.empty() ? 0 : texts.size() - 1;
  if (count < 0 || static_cast<size_t>(count) > there) {
    logError("JRE LSO file counts %ld options and holds %zu\n", count, there);
  }
  const size_t used = count < 0 ? 0 : std::min(there, static_cast<size_t>(count));
  std::vector<std::string> options;
  for (size_t i = 1; i <= used; ++i) {
    if (const char* fault = faultOfOption(texts[i], texts[i - 1])) {
      logMessage("[Extractor] LSO option %zu is not used, %s\n", i - 1, fault);
    } else {
      options.push_back(texts[i]);
    }
  }
  return options;
}

// The number of command-line entries that come after the options. The launch file is at the count
// of its arguments, and stays there.
static long entriesToCome(const Launch& launch) {
  constexpr long kMainClassAndProperties = 2;
  FILE* file = launch.launchFile.get();
  const off_t here = ftello(file);
  const long count = readInt(file, "Extra Args Count");
  fseeko(file, here, SEEK_SET);
  const long room = launch.commandLine.room;
  return kMainClassAndProperties + launch.request.argc + std::min(std::max(count, 0L), room);
}

// Drops options that do not fit the command line or the properties, from the end.
static void dropWhatDoesNotFit(const Launch& launch, std::vector<std::string>* options) {
  const long taken = entriesToCome(launch);
  std::vector<char> properties = launch.properties;
  addStaticProperty(properties.data(), "jvm_options_count", "1000");
  size_t fitting = 0;
  for (const std::string& option : *options) {
    const std::string key = "jvm_options_" + std::to_string(fitting);
    if (!hasRoom(launch.commandLine, taken + static_cast<long>(fitting) + 1) ||
        !propertyFits(properties.data(), properties.size(), key.c_str(), option.c_str())) {
      break;
    }
    addStaticProperty(properties.data(), key.c_str(), option.c_str());
    ++fitting;
  }
  if (fitting < options->size()) {
    logError("JRE LSO file: there is room for %zu of %zu options\n", fitting, options->size());
    options->resize(fitting);
  }
}

static void addOptionsOf(Launch* launch, FILE* file) {
  logMessage("[Extractor] JRE LSO file exists\n");
  const std::vector<std::string> texts = readTexts(file);
  const long count = texts.empty() ? 0 : atol(texts[0].c_str());
  logMessage("[Extractor] Found %ld JVM Options\n", count);
  std::vector<std::string> options = optionsAmong(texts, count);
  dropWhatDoesNotFit(*launch, &options);
  addStatic(launch, "jvm_options_count", std::to_string(options.size()).c_str());
  for (size_t i = 0; i < options.size(); ++i) {
    addRememberedOption(launch, options[i], i);
  }
}

void addRememberedOptions(Launch* launch) {
  logMessage("[Extractor] Checking LSO file\n");
  if (!launch->hasOptionsFile) {
    logError("Not a private JRE (no need to check for LSO file)\n");
    return;
  }
  const Stream file = openOptionsFile(launch->optionsFile);
  if (file != nullptr && !isPlain(file.get())) {
    logError("JRE LSO file is not a regular file\n");
  } else if (file != nullptr) {
    addOptionsOf(launch, file.get());
  }
}
