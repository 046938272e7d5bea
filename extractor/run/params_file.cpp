#include "extractor/run/params_file.h"

#include <cstdlib>
#include <cstring>

#include "extractor/run/launch_property.h"
#include "extractor/run/names.h"
#include "extractor/run/run.h"
#include "formats/names.h"
#include "formats/params_format.h"
#include "launch/launch_app.h"
#include "launch/launch_properties.h"
#include "support/encoding/base64.h"
#include "support/encoding/field_reader.h"
#include "support/failure/failure.h"
#include "support/files/file_kind.h"
#include "support/files/file_operations.h"
#include "support/files/paths.h"
#include "support/log/logging.h"
#include "support/owned.h"
#include "support/process/exit_status.h"
#include "support/splash/splash.h"
#include "support/text/strings.h"

static const size_t kShownLength = 99;

// The scratch text of the log lines that show long values.
static char logScratch[kShownLength + 1];

char* setFirstParamsPath(char* path, const char* executableDir) {
  return setPath(path, executableDir, "..", "Resources", "AppParams.excludefromsigning");
}

char* setSecondParamsPath(char* path, const char* executableDir) {
  return setPath(path, executableDir, "..", "Resources", "params.lproj", "locversion.plist");
}

static FILE* openParamsFile(const ExtractorRun& run) {
  char path[PATH_BUFFER_SIZE];
  setFirstParamsPath(path, run.executableDir);
  if (!doesFileExist(path)) {
    if (!isMissingOrBrokenLink(path)) {
      logMessage("[Extractor] Unable to open params file %s, looking at its other place\n", path);
    }
    setSecondParamsPath(path, run.executableDir);
  }
  FILE* params = fopen(path, "rb");
  if (params == nullptr) {
    logMessage(
        "[Extractor] *********************** Failed to extract wrapper params - couldn't open "
        "params "
        "file\n");
    failProcess(EXIT_STATUS_FAILURE, Failure::BundleIncomplete);
  }
  return params;
}

static void logPair(int index, const char* name, const char* value) {
  if (strlen(value) < 101) {
    logMessage("[DynProps] Dynamic Param %d: %s=[%s]\n", index, name, value);
  } else {
    // The long form shows the last content of the scratch text, not the value.
    logMessage("[DynProps] Dynamic Param %d: %s=[%s...]\n", index, name, logScratch);
  }
}

static void setSplashImage(ExtractorRun& run, const char* value) {
  if (strlen(value) > kShownLength) {
    memcpy(logScratch, value, kShownLength);
    logMessage("[DynProps] Splash Image is %s...\n", logScratch);
  } else {
    logMessage("[DynProps] Splash Image is %s\n", value);
  }
  logMessage("[DynProps] Base64 decoding image...\n");
  run.dynamic.splashImage = base64_decode(value, strlen(value), &run.dynamic.splashImageLength);
  if (run.dynamic.splashImage == nullptr) {
    run.dynamic.splashImageLength = 0;
  }
  logMessage("[DynProps] Decode complete\n");
}

static void setJreName(ExtractorRun& run, const char* value) {
  setPath(run.jreName, value);
  logMessage("[DynProps] JRE name from dynamic launch properties is %s\n", run.jreName);
  requireFolderNamePart("JRE name", run.jreName);
}

static void applyProperty(ExtractorRun& run, const char* name, const char* value) {
  const auto isNamed = [name](const char* known) { return strcmp(name, known) == 0; };
  const bool isTrue = strcmp(value, "true") == 0;
  if (isNamed("update_url")) {
    run.dynamic.updateUrl = allocCopy(value);
    logMessage("[DynProps] Dynamic Update URL: %s\n", value);
  } else if (isNamed("wrapper_autotest")) {
    run.dynamic.autotest = true;
  } else if (isNamed("show_no_ui")) {
    run.dynamic.noUi = run.dynamic.noUi || isTrue;
    if (run.dynamic.noUi) {
      allowAlert(false);
    }
  } else if (isNamed("force_spawn")) {
    forceSpawn = isTrue;
  } else if (isNamed("splash_buffer") && value[0] != 0) {
    setSplashBuffer(atoi(value));
  } else if (isNamed("splash_image")) {
    setSplashImage(run, value);
  } else if (isNamed("jre_name")) {
    setJreName(run, value);
  } else if (isNamed("require_signature")) {
    run.dynamic.requireSignature = run.dynamic.requireSignature || isTrue;
  }
}

static void readPair(ExtractorRun& run, FILE* params, int index) {
  const Block<char> name(readString(params, "Param Name"));
  const Block<char> value(readString(params, "Param Value", PARAM_VALUE_LIMIT));
  logPair(index, name.get(), value.get());
  addDynamicLaunchProperty(run, name.get(), value.get());
  applyProperty(run, name.get(), value.get());
}

void readParams(ExtractorRun& run, FILE* params) {
  run.launchProperties = static_cast<char*>(allocZeroed(LAUNCH_PROPERTIES_SIZE));
  // The Launcher looks for a runtime of this name too when nothing names another.
  setPath(run.jreName, DEFAULT_JRE_NAME);
  const long count = readInt(params, "Params Count");
  logMessage("\n");
  logMessage("++++++++++++++++++++++++++++++++++++++++++++++++\n");
  logMessage("+++ Processing %d dynamic properties\n", static_cast<int>(count));
  logMessage("++++++++++++++++++++++++++++++++++++++++++++++++\n");
  for (int i = 0; i < count; ++i) {
    if (ferror(params) != 0) {
      break;
    }
    if (feof(params) != 0) {
      logMessage("[DynProps] The params file ends after %d dynamic properties\n", i);
      break;
    }
    readPair(run, params, i);
  }
}

void readDynamicProperties(ExtractorRun& run) {
  const Stream params(openParamsFile(run));
  const char* marker = reinterpret_cast<const char*>(paramsMarker);
  if (scanToMarker(params.get(), marker, PARAMS_MARKER_SIZE, "Params") < 0) {
    failProcess(EXIT_STATUS_FAILURE, Failure::BundleIncomplete);
  }
  logMessage("[Extractor] Found Params marker. Extracting now...\n");
  readParams(run, params.get());
  // The unreadable part may be the property that requires signatures.
  if (ferror(params.get()) != 0) {
    failRun(Failure::BundleIncomplete, "[Extractor] The params file cannot be read\n");
  }
}
