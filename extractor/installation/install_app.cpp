#include "extractor/installation/install_app.h"

#include "extractor/archives/tail_stream.h"
#include "extractor/run/run.h"
#include "extractor/versions/folders.h"
#include "support/files/file_operations.h"
#include "support/files/folder_walk.h"
#include "support/log/logging.h"

static const char kApplication[] = "application";

void extractApp(ExtractorRun& run) {
  if (!isOffline(run)) {
    logMessage("[Extractor] Online installer - no app to extract\n");
    return;
  }
  logMessage("[Extractor] Offline installer - app to extract.");
  logMessage("[Extractor] APP folder is %s\n", run.appFolder);
  logMessage("[Extractor] APP temp is %s\n", run.appTemp);
  if (createTempFolder(run.masterFolder, run.appTemp) != 0) {
    failRun(failureOfWriting(0, run.masterFolder), "Unable to create App Temp folder\n");
  }
  logMessage("[Extractor] Extracting App...\n");
  requireNextArchive(run, kApplication, run.unpack200Path, run.appTemp);
  requireNextArchive(run, kApplication, run.unpack200Path, run.appTemp);
}

// An empty version folder would count as the application and hide that there is none.
static void requireContent(const ExtractorRun& run) {
  if (allNames(openFolder(run.appTemp)).empty()) {
    removeTree(run.appTemp);
    failRun(Failure::ArchiveDamaged,
            "[Extractor] The archives of the %s are empty, nothing of it is installed\n",
            kApplication);
  }
}

void putAppIntoPlace(ExtractorRun& run) {
  requireContent(run);
  moveIntoPlace(run.masterFolder, kApplication, run.appTemp, run.appFolder);
  logMessage("[Extractor] Renaming App folder to %s\n", run.appFolder);
}

void installApp(ExtractorRun& run) {
  if (isOffline(run)) {
    putAppIntoPlace(run);
  }
}
