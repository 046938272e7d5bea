#include "extractor/versions/decision.h"

#include <cstdlib>

#include "extractor/run/run.h"
#include "extractor/versions/startable.h"
#include "launcher/installation/version_folders.h"
#include "support/failure/failure.h"
#include "support/log/logging.h"
#include "support/process/exit_status.h"

static void logCarried(const ExtractorRun& run) {
  if (carriesUpdater(run)) {
    logMessage("[Extractor] GenericUpdater version is %s\n", run.tail.guVersion);
  } else {
    logMessage("[Extractor] No GenericUpdater embedded, we are just a launcher\n");
  }
  if (isOffline(run)) {
    logMessage("[Extractor] OFFLINE wrapper: App version is %s\n", run.tail.appVersion);
  } else {
    logMessage("[Extractor] ONLINE wrapper: No App embedded, GU will download and run\n");
  }
  logMessage("[Extractor] Checking for a latest valid GU\n");
}

static void findInstalled(ExtractorRun& run) {
  run.latestGU = allocInstalledUpdater(run);
  run.latestJRE = allocInstalledRuntime(run);
}

static bool isNewer(const char* carriedVersion, const char* installedFolder) {
  return atol(carriedVersion) > pickVersionFromAppFolderName(installedFolder);
}

// Returns why the carried application must be extracted, or null. Only called for an installer that
// carries an updater and an application.
static const char* reasonInApp(const ExtractorRun& run) {
  char* latestApp = allocInstalledApp(run);
  const char* reason = nullptr;
  if (latestApp == nullptr) {
    reason = "[Extractor] No app version found and we are offline so will extract\n";
  } else if (isNewer(run.tail.appVersion, latestApp)) {
    reason =
        "[Extractor] Our App version is newer than existing latest version so will extract and "
        "run\n";
  } else {
    logMessage("[Extractor] Latest App version is newer or same as our version so will just run\n");
  }
  free(latestApp);
  return reason;
}

// Returns why something must be extracted, or null.
static const char* reasonToExtract(const ExtractorRun& run) {
  if (run.latestGU == nullptr || run.latestJRE == nullptr) {
    return "[Extractor] No latest GU or JRE version exists, will check tail for online/offline "
           "info\n";
  }
  logMessage("[Extractor] Latest GU version exists: %s\n", run.latestGU);
  logMessage("[Extractor] Existing JRE exists: %s\n", run.latestJRE);
  if (carriesUpdater(run) && isNewer(run.tail.guVersion, run.latestGU)) {
    return "[Extractor] Our GU version is newer than existing latest version so will extract and "
           "run\n";
  }
  logMessage("[Extractor] Latest GUversion is newer or same as our version so will just run\n");
  return carriesUpdater(run) && isOffline(run) ? reasonInApp(run) : nullptr;
}

static void logReason(const ExtractorRun& run, const char* reason) {
  logMessage("%s", reason);
  logMessage(run.latestJRE != nullptr ? "[Extractor] Note: Latest JRE version does exist\n"
                                      : "[Extractor] Note: No latest JRE version exists\n");
  logMessage(run.latestGU != nullptr ? "[Extractor] Note: Latest GU version does exist\n"
                                     : "[Extractor] Note: No latest GU version exists\n");
}

Decision decide(ExtractorRun& run) {
  logCarried(run);
  findInstalled(run);
  const char* reason = reasonToExtract(run);
  if (reason == nullptr) {
    return Decision::Launch;
  }
  logReason(run, reason);
  if (!carriesUpdater(run)) {
    logMessage("[Extractor] Unable to run (we are just a launcher)\n");
    failProcess(EXIT_STATUS_FAILURE, Failure::NotInstalled);
  }
  return Decision::Install;
}
