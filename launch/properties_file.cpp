#include "launch/launch_properties.h"
#include "launch/launch_steps.h"
#include "launch/retry.h"
#include "support/failure/failure.h"
#include "support/log/logging.h"
#include "support/process/exit_status.h"

[[noreturn]] static void failToWrite(const Launch& launch) {
  logError("Unable to write Launch Properties file! Cannot run!\n");
  failProcess(EXIT_STATUS_PROPERTIES_NOT_WRITTEN, failureOfWriting(0, launch.appFolder));
}

// An existing file of that name can only be another launch's: it is left alone, and the retry uses
// a new name.
static Stream createFile(const char* path) {
  return Stream(fopen(path, "wbx"));
}

static Stream createUnderFreshName(Launch* launch) {
  makeLaunchPropertiesFile(launch->propertiesFile, launch->appFolder);
  logMessage("[Extractor] Writing launch properties to %s\n", launch->propertiesFile);
  logMessage("[Extractor] Launch properties length is %d\n", propsLen(launch->properties.data()));
  Stream file = createFile(launch->propertiesFile);
  for (int attempt = 0; file == nullptr && attempt < RETRY_COUNT; ++attempt) {
    makeLaunchPropertiesFile(launch->propertiesFile, launch->appFolder);
    logMessage("[Retry] Writing launch properties to %s\n", launch->propertiesFile);
    file = createFile(launch->propertiesFile);
    if (file == nullptr) {
      pauseBeforeRetry(RETRY_SECONDS);
    }
  }
  return file;
}

void writePropertiesFile(Launch* launch) {
  logMessage("[Extractor] Writing launch properties file\n");
  Stream file = createUnderFreshName(launch);
  if (file == nullptr) {
    failToWrite(*launch);
  }
  logMessage("[Extractor] Writing to file\n");
  const size_t length = static_cast<size_t>(propsLen(launch->properties.data()));
  const bool written =
      fwrite(launch->properties.data(), 1, length, file.get()) == length && fflush(file.get()) == 0;
  if (fclose(file.release()) != 0 || !written) {
    remove(launch->propertiesFile);
    failToWrite(*launch);
  }
  logMessage("[Extractor] Finished writing launch properties file\n");
}
