#include <unistd.h>

#include <cstdio>
#include <string>
#include <vector>

#include "launch/launch_file.h"
#include "launch/launch_steps.h"
#include "launch/retry.h"
#include "support/field_reader.h"
#include "support/logging.h"

static const int kLoggedCharacters = 99;

// Opens the options file, trying again while it exists but cannot be opened; null after an error
// line.
static Stream openOptionsFile(const char* path) {
  logMessage("[Extractor] Reading %s\n", path);
  Stream file(fopen(path, "rb"));
  const bool worthRetrying = file == nullptr && access(path, F_OK) == 0;
  for (int attempt = 0; worthRetrying && file == nullptr && attempt < RETRY_COUNT; ++attempt) {
    logMessage("[Extractor] LSO file does exist. Retrying (%d)...", attempt);
    file.reset(fopen(path, "rb"));
    if (file == nullptr) {
      pauseBeforeRetry(RETRY_SECONDS);
    }
  }
  if (file == nullptr) {
    logError("JRE LSO file does not exist\n");
  }
  return file;
}

static void logOption(const char* key, const std::string& option) {
  if (option.size() > kLoggedCharacters) {
    logMessage("[Extractor] Launch Prop: %s = %s...\n", key,
               option.substr(0, kLoggedCharacters).c_str());
  } else {
    logMessage("[Extractor] Launch Prop: %s = %s\n", key, option.c_str());
  }
}

static void addRememberedOption(Launch* launch, const std::string& option, size_t index) {
  appendText(&launch->commandLine, option.c_str());
  appendText(&launch->jvmOptions, option.c_str());
  const std::string key = "jvm_options_" + std::to_string(index);
  logOption(key.c_str(), option);
  addStatic(launch, key.c_str(), option.c_str());
}

// Reads `count` options; false when the file ends before the last one does, or cannot be read.
static bool readOptions(FILE* file, long count, std::vector<std::string>* options) {
  for (long i = 0; i < count; ++i) {
    options->push_back(readText(file, "LSO Entry"));
    if (feof(file) != 0 || ferror(file) != 0) {
      return false;
    }
  }
  return true;
}

// The file outlives every version of the application: a damaged one must not stop them all from
// starting for good, and half of its options are not what has worked.
static void addOptionsOf(Launch* launch, FILE* file) {
  logMessage("[Extractor] JRE LSO file exists\n");
  const long count = readInt(file, "LSO Count");
  logMessage("[Extractor] Found %ld JVM Options\n", count);
  std::vector<std::string> options;
  if (!hasRoom(launch->commandLine, count) || !readOptions(file, count, &options)) {
    logError("JRE LSO file is damaged, no option of it is used\n");
    return;
  }
  addStatic(launch, "jvm_options_count", std::to_string(count).c_str());
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
  if (file != nullptr) {
    addOptionsOf(launch, file.get());
  }
}
