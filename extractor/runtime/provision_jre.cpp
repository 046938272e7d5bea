#include "extractor/runtime/provision_jre.h"

#include "extractor/run/run.h"
#include "extractor/runtime/jre_layout.h"
#include "extractor/runtime/publish_runtime.h"
#include "support/files/file_operations.h"
#include "support/files/paths.h"
#include "support/log/logging.h"

static const char kOnlineSection[] = "Setting up online JRE";

static void setUpOnlineJre(ExtractorRun& run) {
  logStartSection(kOnlineSection);
  logMessage(
      "[Extractor] Online installer - no stored JRE, will check for compatible system JRE\n");
  run.jreVersion[0] = 0;
  if (!adoptSystemJre(run)) {
    downloadJre(run);
  }
  logMessage("[JREDownload] Finalising setup of new JRE %s\n", run.jreVersion);
  makeAppFolder(run.jreFolder, run.masterFolder, run.jreName, run.jreVersion);
  logEndSection(kOnlineSection);
}

void putJreIntoPlace(ExtractorRun& run) {
  publishRuntime(run);
  chmod777(run.jreFolder);
  logMessage("[Extractor] Ensuring JRE bin is writable.\n");
  chmod777(childPath(run.jreFolder, "bin").c_str());
  run.unpack200Path = getUnpack200Executable(run.jreFolder);
  logMessage("[Extractor] UP200 path is %s\n", run.unpack200Path);
}

void provisionJre(ExtractorRun& run) {
  logMessage("[Extractor] Setting up a JRE\n");
  if (run.tail.jreVersion[0] != 0) {
    extractCarriedJre(run);
  } else {
    setUpOnlineJre(run);
  }
  putJreIntoPlace(run);
}
