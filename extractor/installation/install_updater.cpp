#include "extractor/installation/install_updater.h"

#include <cstdio>
#include <cstring>

#include "extractor/archives/tail_stream.h"
#include "extractor/run/run.h"
#include "extractor/versions/folders.h"
#include "extractor/versions/hand_over.h"
#include "formats/names.h"
#include "support/files/file_operations.h"
#include "support/files/paths.h"
#include "support/log/logging.h"
#include "support/splash/splash.h"

static const char kSplashName[] = "nativesplash.png";
static const char kUpdater[] = "GenericUpdater";

void nameInstallFolders(ExtractorRun& run) {
  makeDir(run.masterFolder);
  makeAppFolder(run.guFolder, run.masterFolder, UPDATER_NAME, run.tail.guVersion);
  nameTempFolder(run.masterFolder, run.guTemp);
  makeAppFolder(run.appFolder, run.masterFolder, run.tail.appName, run.tail.appVersion);
  nameTempFolder(run.masterFolder, run.appTemp);
  logMessage("[Extractor] GU folder is %s\n", run.guFolder);
  logMessage("[Extractor] GU temp is %s\n", run.guTemp);
}

static void createUpdaterTemp(ExtractorRun& run) {
  if (createTempFolder(run.masterFolder, run.guTemp) != 0) {
    logMessage("[Extractor] Unable to create GU Temp folder - assuming elevation required\n");
    logMessage("[Extractor] Performing elevated setup and launch");
    doElevatedSetupAndLaunch(run.absoluteWrapperPath, run.argumentCount, run.arguments,
                             run.elevated, run.masterFolder, run.guTemp);
  }
}

void extractLzmaTool(ExtractorRun& run) {
  setPath(run.lzmaPath, run.guTemp, "lzma64");
  logMessage("[Extractor] LZMA path is %s\n", run.lzmaPath);
  requireNextArchive(run, kUpdater, nullptr, run.guTemp);
  logMessage("[Extractor] Ensuring LZMA is executable.\n");
  if (setModeWithoutLink(run.lzmaPath, 0777) != 0) {
    logMessage("[Extractor] ***************************** Error setting LZMA executable!\n");
  }
}

static void overrideSplash(const ExtractorRun& run) {
  if (strcmp(run.tail.canOverrideSplash, "1") != 0) {
    return;
  }
  logMessage("[Extractor] Authorised to override the splash image.\n");
  if (run.dynamic.splashImageLength == 0) {
    return;
  }
  const std::string path = childPath(run.guTemp, kSplashName);
  logMessage("[Extractor] Overwriting splash image at %s\n", path.c_str());
  FILE* file = createWithoutLink(path.c_str());
  if (file != nullptr) {
    const size_t length = run.dynamic.splashImageLength;
    const bool isWritten = fwrite(run.dynamic.splashImage, 1, length, file) == length;
    if (fclose(file) != 0 || !isWritten) {
      remove(path.c_str());  // no image rather than a partial one
    }
  }
  chmod777(path.c_str());
}

void extractUpdater(ExtractorRun& run) {
  createUpdaterTemp(run);
  extractLzmaTool(run);
  requireNextArchive(run, kUpdater, nullptr, run.guTemp);
  overrideSplash(run);
  requireNextArchive(run, kUpdater, nullptr, run.guTemp);
  requireNextArchive(run, kUpdater, nullptr, run.guTemp);
  logMessage("[Extractor] Extracted GU and GU Version\n");
}

void installUpdater(ExtractorRun& run) {
  logMessage("[Extractor] Renaming GU folder to %s\n", run.guFolder);
  // The launch at the end starts from this file: without it the version folder would count as
  // complete and never start, however the file was lost.
  requireLaunchFile(kUpdater, run.guTemp);
  moveIntoPlace(run.masterFolder, kUpdater, run.guTemp, run.guFolder);
  chmod777(run.guFolder);
  logMessage("[Extractor] Recreating GU location\n");
  setPath(run.lzmaPath, run.guFolder, "lzma64");
  logMessage("[Extractor] LZMA path is %s\n", run.lzmaPath);
}

void openSplash(ExtractorRun& run) {
  const std::string path = childPath(run.guFolder, kSplashName);
  logMessage("[Extractor] Native Splash PNG path is %s\n", path.c_str());
  logMessage("[Extractor] Configuring splash\n");
  configureSplash(path.c_str());
  logMessage("[Extractor] Showing splash\n");
  if (!isQuiet(run)) {
    showSplash();
  }
  setProgress(-1);
}
