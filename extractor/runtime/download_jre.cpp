#include <cerrno>
#include <string>

#include "archive/archive.h"
#include "extractor/archives/component_archive.h"
#include "extractor/archives/decompress_file.h"
#include "extractor/run/names.h"
#include "extractor/run/run.h"
#include "extractor/runtime/jre_layout.h"
#include "extractor/runtime/jre_temp.h"
#include "extractor/runtime/provision_jre.h"
#include "extractor/runtime/version_file.h"
#include "extractor/versions/folders.h"
#include "formats/site_names.h"
#include "support/failure/failure.h"
#include "support/files/file_kind.h"
#include "support/files/file_operations.h"
#include "support/files/paths.h"
#include "support/log/logging.h"
#include "support/network/downloader.h"
#include "support/owned.h"
#include "support/process/exit_status.h"
#include "support/splash/splash.h"

[[noreturn]] static void failDownload(const ExtractorRun& run, const char* message,
                                      Failure failure = Failure::DownloadFailed) {
  if (!isQuiet(run)) {
    hideSplash();
  }
  failRun(failure, "%s", message);
}

// Downloads the version file and writes its path into `path`.
static void fetchVersionFile(const ExtractorRun& run, char* path) {
  if (!isQuiet(run)) {
    showSplash();
  }
  const std::string name = versionFileName(run.jreName);
  logMessage("[JREDownload] Fetching JRE Version from %s%s\n", run.updateURL.c_str(), name.c_str());
  remove(setPath(path, run.guFolder, name.c_str()));  // that of an earlier download
  downloadVersionFile(run.guFolder, run.updateURL.c_str(), run.jreName);
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
    failProcess(EXIT_STATUS_FAILURE, Failure::DownloadFailed);
  }
  logMessage("\n");
  logMessage("[JREDownload] JRE Version is %s\n", run.jreVersion);
}

// The version becomes part of a URL and of a folder's name. Without one there is no archive to
// request: the run ends first.
static void requireUsableVersion(const ExtractorRun& run) {
  if (run.jreVersion[0] == 0) {
    failRun(Failure::DownloadFailed,
            "[JREDownload] Failed to detect or download a JRE (no jre version)\n");
  }
  if (!isVersionText(run.jreVersion)) {
    failRun(Failure::DownloadFailed,
            "[JREDownload] Version invalid (characters that are not allowed)\n");
  }
}

static void fetchArchive(ExtractorRun& run, char* compressed) {
  nameTempFolder(run.masterFolder, run.jreTemp);
  if (createTempFolder(run.masterFolder, run.jreTemp) != 0) {
    failDownload(run, "Unable to create JRE Temp folder\n", failureOfWriting(0, run.masterFolder));
  }
  if (!isQuiet(run)) {
    showSplash();
  }
  logMessage("[JREDownload] Downloading JRE\n");
  setPath(compressed, run.jreTemp, "JREArchive.p2.l2");
  const std::string url = run.updateURL + siteArchiveName(run.jreName, run.jreVersion);
  downloadFile(url.c_str(), compressed);
  if (!isPlainFile(compressed)) {
    const bool isFull = failureOfWriting(0, run.jreTemp) == Failure::DiskFull;
    removeTree(run.jreTemp);
    failDownload(run, "[JREDownload] Failed to download JRE\n",
                 isFull ? Failure::DiskFull : Failure::DownloadFailed);
  }
  setProgress(-1);
  logMessage("[JREDownload] JRE Downloaded OK, will extract\n");
}

// An existing output file, which may have a second name elsewhere, would be written through. A link
// there is a trap.
static bool isPlaceFree(const char* archive) {
  if (isLink(archive)) {
    logMessage("[JREDownload] Not following link %s\n", archive);
    return false;
  }
  remove(archive);
  return true;
}

static void decompressArchive(const ExtractorRun& run, char* compressed, char* archive) {
  setPath(archive, run.jreTemp, "JREArchive.p2");
  logMessage("[JREDownload] Decompressing JRE archive\n");
  Failure failure = Failure::NotUnpacked;
  if (!isPlaceFree(archive) || !decompressFile(run.lzmaPath, compressed, archive, &failure)) {
    removeTree(run.jreTemp);
    failRun(failure, "[JREDownload] Failed to decompress JRE archive\n");
  }
}

static void extractDownloadedArchive(ExtractorRun& run, const char* compressed,
                                     const char* archive) {
  logMessage("[JREDownload] Extracting JRE archive to %s\n", run.jreTemp);
  const Block<char> unpack200(getUnpack200Executable(run.jreTemp));
  extractArchive(unpack200.get(), archive, run.jreTemp, run.trust);
  remove(compressed);
  logMessage("[JREDownload] Done extracting JRE archive\n");
  removeComponentRecord(run.jreTemp);
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
