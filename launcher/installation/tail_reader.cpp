#include "launcher/installation/tail_reader.h"

#include <cstring>

#include "formats/tail_fields.h"
#include "formats/tail_marker.h"
#include "support/encoding/field_reader.h"
#include "support/failure/failure.h"
#include "support/files/paths.h"
#include "support/log/logging.h"
#include "support/owned.h"
#include "support/process/exit_status.h"

char* app_name = nullptr;
char* app_version = nullptr;
char* jre_version = nullptr;
char* gu_version = nullptr;
char* min_splash = nullptr;
char* derPublicKeyHex = nullptr;
char* can_override_splash = nullptr;
char* install_type = nullptr;
char* silent_parameter = nullptr;
char* update_url = nullptr;

static FILE* openExecutable(const char* path) {
  FILE* stream = fopen(path, "rb");
  if (stream == nullptr) {
    logMessage("Failed to extract wrapper tail - couldn't open file %s\n", path);
    failProcess(EXIT_STATUS_FAILURE, Failure::BundleIncomplete);
  }
  return stream;
}

static FILE* openTailFile(const char* executablePath) {
  // The path is not written to; it may come back as the absolute one.
  const char* absolutePath = getAbsoluteExePath(const_cast<char*>(executablePath));
  logMessage("[Extractor] The absolute wrapper path is %s\n", absolutePath);
  logMessage("[Extractor] The executable name is %s\n", executablePath);
  const Block<char> path(getAbsoluteExeDir(absolutePath));
  logMessage("[Launcher] The executable dir is %s\n", path.get());
  pathcat(pathcat(pathcat(path.get(), ".."), "Resources"), "Tail");
  logMessage("[Launcher] No tail found. Trying %s\n", path.get());
  FILE* stream = fopen(path.get(), "rb");
  if (stream == nullptr) {
    logMessage(
        "[Launcher] ************************* Failed to extract wrapper tail - couldn't open file "
        "%s\n",
        path.get());
    failProcess(EXIT_STATUS_FAILURE, Failure::BundleIncomplete);
  }
  return stream;
}

// Returns a stream positioned at the record's first field.
static FILE* openTail(const char* executablePath) {
  FILE* stream = openExecutable(executablePath);
  if (scanToMarker(stream, marker, TAIL_MARKER_SIZE, "Tail") >= 0) {
    logMessage("[Launcher] Found tail marker\n");
    return stream;
  }
  fclose(stream);
  return openTailFile(executablePath);
}

void readCommonTailFields(FILE* stream) {
  app_name = readTailField(stream, TAIL_APP_NAME);
  app_version = readTailField(stream, TAIL_APP_VERSION);
  jre_version = readTailField(stream, TAIL_JRE_VERSION);
  gu_version = readTailField(stream, TAIL_GU_VERSION);
  min_splash = readTailField(stream, TAIL_MIN_SPLASH_MS);
  derPublicKeyHex = readTailField(stream, TAIL_PUBLIC_KEY);
  can_override_splash = readTailField(stream, TAIL_CAN_OVERRIDE_SPLASH);
  install_type = readTailField(stream, TAIL_INSTALL_TYPE);
  silent_parameter = readTailField(stream, TAIL_SILENT_PARAMETER);
}

void printTruncated(const char* label, const char* value) {
  constexpr size_t kLongest = 99;
  if (value == nullptr) {
    logMessage("[Launcher] %s = NULL", label);
  } else if (strlen(value) > kLongest) {
    logMessage("[Launcher] %s = %.99s...\n", label, value);
  } else {
    logMessage("[Launcher] %s = %s\n", label, value);
  }
}

static void logFields() {
  const char* const common[] = {app_name,        app_version,     jre_version,         gu_version,
                                min_splash,      derPublicKeyHex, can_override_splash, install_type,
                                silent_parameter};
  static_assert(sizeof common / sizeof common[0] == TAIL_SILENT_PARAMETER + 1, "one value each");
  const TailField* field = TAIL_FIELDS;
  for (const char* value : common) {
    printTruncated(field->name, value);
    ++field;
  }
  printTruncated(TAIL_FIELDS[TAIL_UPDATE_URL].name, update_url);
}

void extractTail(const char* executablePath) {
  FILE* stream = openTail(executablePath);
  readCommonTailFields(stream);
  // By its place this is the required Java version; the Launcher uses neither beyond logging.
  update_url = readTailField(stream, TAIL_UPDATE_URL);
  logFields();
  fclose(stream);
}
