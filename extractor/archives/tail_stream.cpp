#include "extractor/archives/tail_stream.h"

#include "archive/archive.h"
#include "extractor/archives/decompress_ahead.h"
#include "extractor/run/names.h"
#include "extractor/run/run.h"
#include "formats/tail_fields.h"
#include "formats/tail_marker.h"
#include "support/encoding/field_reader.h"
#include "support/failure/failure.h"
#include "support/files/file_kind.h"
#include "support/files/file_operations.h"
#include "support/files/paths.h"
#include "support/log/logging.h"
#include "support/process/exit_status.h"

static FILE* openForTail(const char* path) {
  FILE* stream = fopen(path, "rb");
  if (stream == nullptr) {
    logMessage(
        "[Extractor] ************************* Failed to extract wrapper tail - couldn't open file "
        "%s\n",
        path);
    failProcess(EXIT_STATUS_FAILURE, Failure::BundleIncomplete);
  }
  return stream;
}

static FILE* openTailResource(const ExtractorRun& run) {
  logMessage("[Extractor] The executable dir is %s\n", run.executableDir);
  const std::string path = childPath(run.executableDir, "../Resources/Tail");
  logMessage("[Extractor] No tail found. Trying %s\n", path.c_str());
  return openForTail(path.c_str());
}

void openTailStream(ExtractorRun& run) {
  FILE* executable = openForTail(run.executablePath);
  marker = allocAndInitMarker();
  if (scanToMarker(executable, marker, TAIL_MARKER_SIZE, "Tail") >= 0) {
    logMessage("[Extractor] Found tail marker\n");
    run.tailStream = executable;
    return;
  }
  fclose(executable);
  run.tailStream = openTailResource(run);
}

void readTailFields(ExtractorRun& run) {
  FILE* stream = run.tailStream;
  TailFields& tail = run.tail;
  tail.appName = readTailField(stream, TAIL_APP_NAME);
  tail.appVersion = readTailField(stream, TAIL_APP_VERSION);
  tail.jreVersion = readTailField(stream, TAIL_JRE_VERSION);
  tail.guVersion = readTailField(stream, TAIL_GU_VERSION);
  tail.minSplashMs = readTailField(stream, TAIL_MIN_SPLASH_MS);
  tail.publicKeyHex = readTailField(stream, TAIL_PUBLIC_KEY);
  tail.canOverrideSplash = readTailField(stream, TAIL_CAN_OVERRIDE_SPLASH);
  tail.installType = readTailField(stream, TAIL_INSTALL_TYPE);
  tail.silentParameter = readTailField(stream, TAIL_SILENT_PARAMETER);
  tail.requiredJavaVersion = readTailField(stream, TAIL_REQUIRED_JAVA_VERSION);
  tail.updateUrl = readTailField(stream, TAIL_UPDATE_URL);
  if (ferror(stream) != 0) {
    failRun(Failure::BundleIncomplete, "[Extractor] The installer's tail cannot be read\n");
  }
  setAlertName(tail.appName);
  requireFolderNamePart(TAIL_FIELDS[TAIL_APP_NAME].name, tail.appName);
  requireFolderNamePart(TAIL_FIELDS[TAIL_APP_VERSION].name, tail.appVersion);
  requireFolderNamePart(TAIL_FIELDS[TAIL_JRE_VERSION].name, tail.jreVersion);
  requireFolderNamePart(TAIL_FIELDS[TAIL_GU_VERSION].name, tail.guVersion);
}

namespace {

// The result for an archive of the stream.
enum class Extraction {
  Done,      // extracted, or an empty placeholder
  Missing,   // the stream ended before it
  Rejected,  // its signature is wrong: the destination is gone
};

}  // namespace

// Returns what the record's extraction returns.
static int extractRecordOfTail(ExtractorRun& run, const char* unpack200, const char* destination) {
  beginNextAhead(run);
  ReadyData ready{};
  if (takeAhead(run, &ready)) {
    return extractArchiveFileFromReadyData(run.lzmaPath, unpack200, destination, run.tailStream,
                                           ready, run.trust);
  }
  long signedLength = -1;
  return extractArchiveFileCheckSignature(run.lzmaPath, unpack200, destination, run.tailStream,
                                          &signedLength, nullptr, run.trust);
}

static Extraction extractNextArchive(ExtractorRun& run, const char* unpack200,
                                     const char* destination) {
  const int result = extractRecordOfTail(run, unpack200, destination);
  if (!isFolder(destination)) {
    return Extraction::Rejected;
  }
  // An empty record that ends in its zero byte is a placeholder; without the zero byte the
  // installer was truncated. A partial record ends the process where it is read.
  return result != 0 && feof(run.tailStream) != 0 ? Extraction::Missing : Extraction::Done;
}

void requireNextArchive(ExtractorRun& run, const char* component, const char* unpack200,
                        const char* destination) {
  const Extraction extraction = extractNextArchive(run, unpack200, destination);
  if (extraction == Extraction::Done) {
    return;
  }
  removeTree(destination);
  if (extraction == Extraction::Rejected) {
    failRun(Failure::SignatureRefused,
            "[Extractor] The %s archive was rejected, nothing of it is installed\n", component);
  }
  failRun(Failure::ArchiveDamaged, "[Extractor] The installer ends before the %s archive\n",
          component);
}
