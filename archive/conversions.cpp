#include "archive/conversions.h"

#include <fcntl.h>

#include <cstdio>
#include <cstring>
#include <initializer_list>

#include "archive/archive.h"
#include "archive/extraction.h"
#include "support/failure/failure.h"
#include "support/files/file_operations.h"
#include "support/files/paths.h"
#include "support/log/logging.h"
#include "support/process/exit_status.h"
#include "support/process/spawner.h"

bool pack200EntryMet = false;

static const size_t kShortestWithSuffix = 4;

static bool endsWith(const char* text, const char* suffix) {
  const size_t length = strlen(text);
  const size_t suffixLength = strlen(suffix);
  return length >= kShortestWithSuffix && strcmp(text + length - suffixLength, suffix) == 0;
}

// Returns the tool's exit status, or -1 if it could not be started or a signal ended it.
static int runTool(const char* exe, std::initializer_list<const char*> arguments) {
  const OwnedSpawner spawner(createSpawner());
  setSpawnerExe(spawner.get(), exe == nullptr ? "" : exe);
  for (const char* argument : arguments) {
    addSpawnerArg(spawner.get(), argument);
  }
  const SpawnEnd end = runSpawnerToItsEnd(spawner.get());
  return end.isBySignal ? -1 : end.status;
}

// Runs a tool that makes the file `output` in `folder`; afterwards this file is the tool's work or
// missing. The tool follows the path that it is given, which is checked first. Returns the result
// of runTool().
static int runToolFor(const char* output, const Entry& entry, const Descriptor& folder,
                      const char* exe, std::initializer_list<const char*> arguments) {
  const char* name = pathToFile(output);
  refuseLink(folder, name, entry.path.get());
  removeFile(folder, name);
  refuseMovedFolder(folder, output, entry.path.get());
  const int status = runTool(exe, arguments);
  if (status != 0 || !holds(folder, name)) {
    removeFile(folder, name);
  }
  return status;
}

void unpackPack200(const char* unpack200Exe, Entry* entry, const Descriptor& folder) {
  pack200EntryMet = true;
  static_cast<void>(
      runToolFor(entry->plain, *entry, folder, unpack200Exe, {entry->target, entry->plain}));
  if (!doesFileExist(entry->plain) || !holds(folder, pathToFile(entry->plain))) {
    logMessage("\t[ExtractArchiveFile] ERROR: unpack200 (%s) does not exist!\n", entry->plain);
    failProcess(EXIT_STATUS_UNPACK200_FAILED, Failure::NotUnpacked);
  }
  removeFile(folder, pathToFile(entry->target));
  setPath(entry->target, entry->plain);
}

bool isLzmaEntry(const Entry& entry) {
  return entry.type != PACK200_ENTRY && endsWith(entry.target, ".l2");
}

// The tool's end is logged here as if it had run now. Where what it made cannot be moved, the
// entry's data are, and the tool runs again.
static int takeReadyData(const char* output, const Entry& entry, const Descriptor& folder,
                         const char* lzmaExe, const ReadyData& ready) {
  const char* name = pathToFile(output);
  refuseLink(folder, name, entry.path.get());
  removeFile(folder, name);
  if (renameat(AT_FDCWD, ready.data, folder.get(), name) != 0) {
    const int error = renameat(AT_FDCWD, ready.compressed, folder.get(), pathToFile(entry.target));
    return error != 0 ? error
                      : runToolFor(output, entry, folder, lzmaExe, {"d", entry.target, output});
  }
  const OwnedSpawner spawner(createSpawner());
  setSpawnerExe(spawner.get(), lzmaExe);
  for (const char* argument : {"d", static_cast<const char*>(entry.target), output}) {
    addSpawnerArg(spawner.get(), argument);
  }
  return logEarlierRun(ready.child, ready.status).status;
}

void decompressLzma(const char* lzmaExe, Entry* entry, const Descriptor& folder,
                    const ReadyData* ready) {
  if (strlen(entry->target) < kShortestWithSuffix) {
    logMessage("\t[ExtractArchiveFile] Path to file too short to check for LZMA\n");
    return;
  }
  if (!endsWith(entry->target, ".l2")) {
    return;
  }
  logMessage("\t[ExtractArchiveFile] Requires un-LZMA\n");
  char output[PATH_BUFFER_SIZE];
  setPath(output, entry->target);
  output[strlen(output) - strlen(".l2")] = 0;
  logMessage("\t[ExtractArchiveFile] Created outpath %s and spawning\n", output);
  const int status =
      ready != nullptr ? takeReadyData(output, *entry, folder, lzmaExe, *ready)
                       : runToolFor(output, *entry, folder, lzmaExe, {"d", entry->target, output});
  removeFile(folder, pathToFile(entry->target));
  if (!holds(folder, pathToFile(output))) {
    logMessage("\t[ExtractArchiveFile] ERROR: %s could not be decompressed\n", entry->target);
    failProcess(EXIT_STATUS_FAILURE,
                status == EXIT_STATUS_LZMA_DISK_FULL ? Failure::DiskFull : Failure::NotUnpacked);
  }
  setPath(entry->target, output);
  logMessage("\t[ExtractArchiveFile] Finished decompressing\n");
}

void extractNestedArchive(const char* unpack200Exe, const Entry& entry, const Descriptor& folder,
                          Destination* destination, Trust trust) {
  if (!endsWith(entry.target, ".p2")) {
    return;
  }
  logMessage("\t[ExtractArchiveFile] Starting un-p2Archiving\n");
  extractAndVerify(unpack200Exe, entry.target, destination, trust);
  removeFile(folder, pathToFile(entry.target));
  logMessage("\t[ExtractArchiveFile] Finished un-archiving\n");
}
