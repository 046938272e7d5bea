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

// Downloads the version file and returns its path.
static std::string fetchVersionFile(const ExtractorRun& run) {
  if (!isQuiet(run)) {
    showSplash();
  }
  const std::string name = versionFileName(run.jreName);
  logMessage("[JREDownload] Fetching JRE Version from %s%s\n", run.updateURL.c_str(), name.c_str());
  const std::string path = childPath(run.guFolder, name);
  remove(path.c_str());  // that of an earlier download
  downloadVersionFile(run.guFolder, run.updateURL.c_str(), run.jreName);
  if (!isRegularFile(path.c_str())) {
    failDownload(run, "[JREDownload] Failed to download JRE version file\n");
  }
  setProgress(-1);
  logMessage("[JREDownload] JRE version downloaded OK [%s]\n", path.c_str());
  return path;
}

// Reads the version to download into run.jreVersion.
static void readJreVersion(ExtractorRun& run, const std::string& path) {
  static_assert(sizeof run.jreVersion == VERSION_TEXT_SIZE, "the version text fits its buffer");
  const Stream file(fopen(path.c_str(), "rb"));
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

// Downloads the archive into the new folder run.jreTemp and returns its path.
static std::string fetchArchive(ExtractorRun& run) {
  nameTempFolder(run.masterFolder, run.jreTemp);
  if (createTempFolder(run.masterFolder, run.jreTemp) != 0) {
    failDownload(run, "Unable to create JRE Temp folder\n", failureOfWriting(0, run.masterFolder));
  }
  if (!isQuiet(run)) {
    showSplash();
  }
  logMessage("[JREDownload] Downloading JRE\n");
  const std::string compressed = childPath(run.jreTemp, "JREArchive.p2.l2");
  const std::string url = run.updateURL + siteArchiveName(run.jreName, run.jreVersion);
  downloadFile(url.c_str(), compressed.c_str());
  if (!isRegularFile(compressed.c_str())) {
    const bool isFull = failureOfWriting(0, run.jreTemp) == Failure::DiskFull;
    removeTree(run.jreTemp);
    failDownload(run, "[JREDownload] Failed to download JRE\n",
                 isFull ? Failure::DiskFull : Failure::DownloadFailed);
  }
  setProgress(-1);
  logMessage("[JREDownload] JRE Downloaded OK, will extract\n");
  return compressed;
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

// Returns the path of the decompressed archive.
static std::string decompressArchive(const ExtractorRun& run, const std::string& compressed) {
  const std::string archive = childPath(run.jreTemp, "JREArchive.p2");
  logMessage("[JREDownload] Decompressing JRE archive\n");
  Failure failure = Failure::NotUnpacked;
  if (!isPlaceFree(archive.c_str()) ||
      !decompressFile(run.lzmaPath, compressed.c_str(), archive.c_str(), &failure)) {
    removeTree(run.jreTemp);
    failRun(failure, "[JREDownload] Failed to decompress JRE archive\n");
  }
  return archive;
}

static void extractDownloadedArchive(ExtractorRun& run, const std::string& compressed,
                                     const std::string& archive) {
  logMessage("[JREDownload] Extracting JRE archive to %s\n", run.jreTemp);
  const Block<char> unpack200(getUnpack200Executable(run.jreTemp));
  extractArchive(unpack200.get(), archive.c_str(), run.jreTemp, run.trust);
  remove(compressed.c_str());
  logMessage("[JREDownload] Done extracting JRE archive\n");
  removeComponentRecord(run.jreTemp);
  requireJavaInTemp(run);
  logMessage("[JREDownload] Regenerating jsa...\n");
  regenerateClassData(run);
  logMessage("[JREDownload] Downloaded JRE is now ready.\n");
}

void downloadJre(ExtractorRun& run) {
  logMessage("[JREDownload] Failed to pick up any existing system JRE, will download\n");
  const std::string versionFile = fetchVersionFile(run);
  readJreVersion(run, versionFile);
  requireUsableVersion(run);
  const std::string compressed = fetchArchive(run);
  const std::string archive = decompressArchive(run, compressed);
  extractDownloadedArchive(run, compressed, archive);
}
