#include "extractor/extract_wrapper_tail.h"

#include <csignal>
#include <string>

#include "extractor/archives/decompress_ahead.h"
#include "extractor/archives/tail_stream.h"
#include "extractor/installation/install_app.h"
#include "extractor/installation/install_updater.h"
#include "extractor/installation/interrupted_runs.h"
#include "extractor/run/names.h"
#include "extractor/run/params_file.h"
#include "extractor/run/run.h"
#include "extractor/run/start_up.h"
#include "extractor/runtime/provision_jre.h"
#include "extractor/versions/decision.h"
#include "extractor/versions/hand_over.h"
#include "extractor/versions/install_lock.h"
#include "extractor/versions/temp_marks.h"
#include "support/failure/failure.h"
#include "support/log/logging.h"

// A parent that ignores the end of its children hands that on, and the system would then throw away
// how the tools ended that an installation runs.
static void noticeEndOfChildren() {
  signal(SIGCHLD, SIG_DFL);
}

// From the invocation to a known master folder with a log file in it.
static void startUp(ExtractorRun& run) {
  noticeEndOfChildren();
  prepareSplash();
  resolveWrapperPaths(run);
  readDynamicProperties(run);
  announceTail(run);
  openTailStream(run);
  readTailFields(run);
  chooseUpdateUrl(run);
  decideSilence(run);
  addStaticProperties(run);
  loadPublicKey(run);
  enforceSignatures(run);
  findSharedFolder(run);
  endUpdateUrlInSlash(run);
  nameMasterFolder(run);
  setupFileLogging(run.masterFolder);
  overrideJreName(run);
  requireDistinctNames(run.jreName, run.tail.appName);
  makeSharedConfigFolder(run);
}

static int endAheadAfterFailure(int status, Failure) {
  endAhead();
  return status;
}

// Brings what the installer carries into version folders: the updater, a runtime, the application.
static void install(ExtractorRun& run) {
  setEndOfFailures(endAheadAfterFailure);
  nameInstallFolders(run);
  extractUpdater(run);
  installUpdater(run);
  openSplash(run);
  provisionJre(run);
  extractApp(run);
  installApp(run);
  setEndOfFailures(nullptr);
  endAhead();
}

void extractWrapperTail(char* executablePath, int argc, char** argv, int, char**, bool elevated) {
  // Never destroyed: other threads, Java's among them, still use it while the process exits.
  static ExtractorRun& run = *new ExtractorRun();
  run.executablePath = executablePath;
  run.argumentCount = argc;
  run.arguments = argv;
  run.elevated = elevated;
  // Until the silence is decided, any word may be the one that asks for it.
  allowAlert(!elevated && argc <= 1);

  startUp(run);
  finishInterruptedRuntimes(run.masterFolder);
  const std::string installed = versionFoldersIn(run.masterFolder);
  if (decide(run) == Decision::Launch) {
    launchWithoutExtraction(run);
  }
  InstallLock lock(run.masterFolder);
  // Another installer may have finished since the decision: what it installed counts.
  if (versionFoldersIn(run.masterFolder) != installed && decide(run) == Decision::Launch) {
    lock.release();
    launchWithoutExtraction(run);
  }
  if (lock.isHeld()) {
    finishRuntimesUnderLock(run.masterFolder);  // those that another installer left since
    removeAbandonedTempFolders(run.masterFolder);
  }
  install(run);
  releaseMarks();
  lock.release();
  launchInstalled(run);
}
