#include <cstdlib>

#include "extractor/archives/component_archive.h"
#include "extractor/archives/tail_stream.h"
#include "extractor/run/run.h"
#include "extractor/runtime/jre_layout.h"
#include "extractor/runtime/jre_temp.h"
#include "extractor/runtime/provision_jre.h"
#include "extractor/runtime/version_file.h"
#include "extractor/versions/folders.h"
#include "support/files/file_operations.h"
#include "support/log/logging.h"

static const char kSection[] = "Extracting Offline JRE";

void extractCarriedJre(ExtractorRun& run) {
  logStartSection(kSection);
  logMessage("[Extractor] We want to query the JRE version to enable proxy detection.\n");
  downloadVersionFile(run.guFolder, run.updateURL.c_str(), run.jreName);
  nameTempFolder(run.masterFolder, run.jreTemp);
  if (createTempFolder(run.masterFolder, run.jreTemp) != 0) {
    failRun(failureOfWriting(0, run.masterFolder), "Unable to create JRE Temp folder\n");
  }
  makeAppFolder(run.jreFolder, run.masterFolder, run.jreName, run.tail.jreVersion);
  logMessage("[Extractor] Offline installer - no need to download JRE, will extract\n");
  char* unpack200 = getUnpack200Executable(run.jreTemp);
  logMessage("[Extractor] UP200 path is %s\n", unpack200);
  logMessage("[Extractor] Extracting JRE archive...\n");
  requireNextArchive(run, "JRE", unpack200, run.jreTemp);
  free(unpack200);
  logMessage("[Extractor] Extracted JRE %s\n", run.jreName);
  removeComponentRecord(run.jreTemp);
  requireJavaInTemp(run);
  logMessage("[Extractor] Regenerating jsa...\n");
  regenerateClassData(run);
  logEndSection(kSection);
}
