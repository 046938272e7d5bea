#include "extractor/versions/hand_over.h"

#include <cstdlib>

#include "extractor/run/run.h"
#include "extractor/versions/startable.h"
#include "launch/launch_app.h"
#include "platform/process_end.h"
#include "support/failure/failure.h"
#include "support/log/logging.h"
#include "support/process/exit_status.h"
#include "support/splash/splash.h"

static int launchUpdater(const ExtractorRun& run, const char* guFolderName, const char* jre,
                         int launchClass) {
  return launchFromLaunchFile(run.masterFolder, run.launchProperties, run.argumentCount,
                              run.arguments, guFolderName, storedUpdateUrl(run),
                              dynamicUpdateUrl(run), jre, launchClass, nullptr, false, nullptr,
                              run.absoluteWrapperPath, false, nullptr);
}

[[noreturn]] static void closeAndLaunch(ExtractorRun& run, const char* guFolderName) {
  closeTailStream(run);
  if (run.elevated) {
    endProcess(EXIT_SUCCESS);
  }
  endWithZeroAfter(launchUpdater(run, guFolderName, run.jreName, LAUNCH_APPLICATION));
}

void launchWithoutExtraction(ExtractorRun& run) {
  logMessage("[Extractor] Running without extraction now\n");
  closeAndLaunch(run, run.latestGU);
}

void launchInstalled(ExtractorRun& run) {
  const char* latestGU = allocUpdaterToLaunch(run.masterFolder);
  if (latestGU == nullptr) {
    failRun("No latest App version even after download!\n");
  }
  cleanup();
  logMessage("[Extractor] Will now run latest GU %s\n", latestGU);
  closeAndLaunch(run, latestGU);
}

int probeSystemJava(const ExtractorRun& run, const char* guFolderName, const char* java) {
  return launchUpdater(run, guFolderName, java, LAUNCH_COMPATIBILITY);
}

void doElevatedSetupAndLaunch(const char*, int, char**, bool, const char* masterFolder,
                              const char*) {
  failProcess(EXIT_STATUS_FAILURE, failureOfWriting(0, masterFolder));
}
