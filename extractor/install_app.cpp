#include "extractor/install_app.h"

#include "extractor/folders.h"
#include "extractor/run.h"
#include "extractor/tail_stream.h"
#include "support/logging.h"

static const char kApplication[] = "application";

void extractApp(ExtractorRun& run) {
  if (!isOffline(run)) {
    logMessage("[Extractor] Online installer - no app to extract\n");
    return;
  }
  logMessage("[Extractor] Offline installer - app to extract.");
  logMessage("[Extractor] APP folder is %s\n", run.appFolder);
  logMessage("[Extractor] APP temp is %s\n", run.appTemp);
  if (createTempFolder(run, run.appTemp) != 0) {
    failRun("Unable to create App Temp folder\n");
  }
  logMessage("[Extractor] Extracting App...\n");
  requireNextArchive(run, kApplication, run.unpack200Path, run.appTemp);
  requireNextArchive(run, kApplication, run.unpack200Path, run.appTemp);
}

void installApp(ExtractorRun& run) {
  if (!isOffline(run)) {
    return;
  }
  moveIntoPlace(run, kApplication, run.appTemp, run.appFolder);
  logMessage("[Extractor] Renaming App folder to %s\n", run.appFolder);
}
