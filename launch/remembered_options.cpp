#include <unistd.h>

#include "launch/launch_file.h"
#include "launch/launch_steps.h"
#include "launch/retry.h"
#include "launcher/field_reader.h"
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

static void addRememberedOption(Launch* launch, FILE* file, long index) {
  const std::string option = readText(file, "LSO Entry");
  appendText(&launch->commandLine, option.c_str());
  appendText(&launch->jvmOptions, option.c_str());
  const std::string key = "jvm_options_" + std::to_string(index);
  logOption(key.c_str(), option);
  addStatic(launch, key.c_str(), option.c_str());
}

static void readOptions(Launch* launch, FILE* file) {
  logMessage("[Extractor] JRE LSO file exists\n");
  const long count = readInt(file, "LSO Count");
  logMessage("[Extractor] Found %ld JVM Options\n", count);
  requireRoom(launch->commandLine, count);
  addStatic(launch, "jvm_options_count", std::to_string(count).c_str());
  for (long i = 0; i < count; ++i) {
    addRememberedOption(launch, file, i);
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
    readOptions(launch, file.get());
  }
}
