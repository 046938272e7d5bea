#include "launcher/installation/tail_reader.h"

#include "launcher/arguments.h"
#include "launcher/installation/tail_marker.h"
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

// Returns a stream that stands at the record's first field.
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
  app_name = readString(stream, "App Name", TAIL_FIELD_LIMIT);
  app_version = readString(stream, "App Version", TAIL_FIELD_LIMIT);
  jre_version = readString(stream, "JRE Version", TAIL_FIELD_LIMIT);
  gu_version = readString(stream, "GU Version", TAIL_FIELD_LIMIT);
  min_splash = readString(stream, "Min Splash MS", TAIL_FIELD_LIMIT);
  derPublicKeyHex = readString(stream, "Signature Public Key", TAIL_PUBLIC_KEY_LIMIT);
  can_override_splash = readString(stream, "Can Override Splash", TAIL_FIELD_LIMIT);
  install_type = readString(stream, "Install Type", TAIL_FIELD_LIMIT);
  silent_parameter = readString(stream, "Silent Parameter", TAIL_FIELD_LIMIT);
}

static void logFields() {
  printTruncated("App Name", app_name);
  printTruncated("App Version", app_version);
  printTruncated("JRE Version", jre_version);
  printTruncated("GU Version", gu_version);
  printTruncated("Min Splash MS", min_splash);
  printTruncated("Signature Public Key", derPublicKeyHex);
  printTruncated("Can Override Splash", can_override_splash);
  printTruncated("Install Type", install_type);
  printTruncated("Silent Parameter", silent_parameter);
  printTruncated("Update URL", update_url);
}

void extractTail(const char* executablePath) {
  FILE* stream = openTail(executablePath);
  readCommonTailFields(stream);
  // By its place this is the required Java version; the Launcher uses neither beyond logging.
  update_url = readString(stream, "Update URL", TAIL_UPDATE_URL_LIMIT);
  logFields();
  fclose(stream);
}
