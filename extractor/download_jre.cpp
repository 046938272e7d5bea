#include <cerrno>
#include <string>

#include "archive/archive.h"
#include "extractor/folders.h"
#include "extractor/jre_layout.h"
#include "extractor/jre_temp.h"
#include "extractor/names.h"
#include "extractor/provision_jre.h"
#include "extractor/run.h"
#include "extractor/version_file.h"
#include "platform/process_end.h"
#include "support/downloader.h"
#include "support/exit_status.h"
#include "support/file_kind.h"
#include "support/file_operations.h"
#include "support/logging.h"
#include "support/owned.h"
#include "support/paths.h"
#include "support/spawner.h"
#include "support/splash.h"

[[noreturn]] static void failDownload(const ExtractorRun& run, const char* message) {
  if (!isQuiet(run)) {
    hideSplash();
  }
  failRun("%s", message);
}

// Downloads the version file and writes its path into `path`.
static void fetchVersionFile(const ExtractorRun& run, char* path) {
  if (!isQuiet(run)) {
    showSplash();
  }
  const std::string name = versionFileName(run.jreName);
  logMessage("[JREDownload] Fetching JRE Version from %s%s\n", run.updateURL, name.c_str());
  setPath(path, run.guFolder, name.c_str());
  downloadVersionFile(run.guFolder, run.updateURL, run.jreName);
  if (!isPlainFile(path)) {
    failDownload(run, "[JREDownload] Failed to download JRE version file\n");
  }
  setProgress(-1);
  logMessage("[JREDownload] JRE version downloaded OK [%s]\n", path);
}

// Reads the version to download into run.jreVersion.
static void readJreVersion(ExtractorRun& run, const char* path) {
  static_assert(sizeof run.jreVersion == VERSION_TEXT_SIZE, "the version text fits its buffer");
  const Stream file(fopen(path, "rb"));
  if (file == nullptr) {
    logMessage("[JREDownload] ************************** Unable to open version file! [%d]", errno);
    return;
  }
  logMessage("[JREDownload] Extracting version: ");
  if (!readVersionText(file.get(), run.jreVersion)) {
    endProcess(EXIT_STATUS_FAILURE);
  }
  logMessage("\n");
  logMessage("[JREDownload] JRE Version is %s\n", run.jreVersion);
}

// The version becomes part of a URL and of a folder's name. Without one there is no archive to ask
// for: the run ends before it asks.
static void requireUsableVersion(const ExtractorRun& run) {
  if (run.jreVersion[0] == 0) {
    failRun("[JREDownload] Failed to detect or download a JRE (no jre version)\n");
  }
  if (!isVersionText(run.jreVersion)) {
    failRun("[JREDownload] Version invalid (characters that are not allowed)\n");
  }
}

static void fetchArchive(ExtractorRun& run, char* compressed) {
  nameTempFolder(run, run.jreTemp);
  if (createTempFolder(run, run.jreTemp) != 0) {
    failDownload(run, "Unable to create JRE Temp folder\n");
  }
  if (!isQuiet(run)) {
    showSplash();
  }
  logMessage("[JREDownload] Downloading JRE\n");
  setPath(compressed, run.jreTemp, "JREArchive.p2.l2");
  const std::string url = std::string(run.updateURL) + "Quorvane-" + run.jreName + "-" +
                          run.jreVersion + "-archive.p2.l2";
  downloadFile(url.c_str(), compressed);
  if (!isPlainFile(compressed)) {
    removeTree(run.jreTemp);
    failDownload(run, "[JREDownload] Failed to download JRE\n");
  }
  setProgress(-1);
  logMessage("[JREDownload] JRE Downloaded OK, will extract\n");
}

static void decompressArchive(const ExtractorRun& run, char* compressed, char* archive) {
  setPath(archive, run.jreTemp, "JREArchive.p2");
  char lzma[PATH_BUFFER_SIZE];
  const OwnedSpawner spawner(createSpawner());
  setSpawnerExe(spawner.get(), setPath(lzma, run.lzmaPath));
  addSpawnerArg(spawner.get(), "d");
  addSpawnerArg(spawner.get(), compressed);
  addSpawnerArg(spawner.get(), archive);
  logMessage("[JREDownload] Decompressing JRE archive\n");
  if (runSpawnerAndWait(spawner.get()) != 0 || wasSpawnEndedBySignal()) {
    removeTree(run.jreTemp);
    failRun("[JREDownload] Failed to decompress JRE archive\n");
  }
}

static void extractDownloadedArchive(ExtractorRun& run, const char* compressed,
                                     const char* archive) {
  logMessage("[JREDownload] Extracting JRE archive to %s\n", run.jreTemp);
  const Block<char> unpack200(getUnpack200Executable(run.jreTemp));
  extractArchive(unpack200.get(), archive, run.jreTemp, run.publicKey);
  remove(compressed);
  logMessage("[JREDownload] Done extracting JRE archive\n");
  requireJavaInTemp(run);
  logMessage("[JREDownload] Regenerating jsa...\n");
  regenerateClassData(run);
  logMessage("[JREDownload] Downloaded JRE is now ready.\n");
}

void downloadJre(ExtractorRun& run) {
  char versionFile[PATH_BUFFER_SIZE];
  char compressed[PATH_BUFFER_SIZE];
  char archive[PATH_BUFFER_SIZE];
  logMessage("[JREDownload] Failed to pick up any existing system JRE, will download\n");
  fetchVersionFile(run, versionFile);
  readJreVersion(run, versionFile);
  requireUsableVersion(run);
  fetchArchive(run, compressed);
  decompressArchive(run, compressed, archive);
  extractDownloadedArchive(run, compressed, archive);
}
