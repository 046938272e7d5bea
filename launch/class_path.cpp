#include "launch/launch_file.h"
#include "launch/launch_steps.h"
#include "support/encoding/field_reader.h"
#include "support/failure/failure.h"
#include "support/log/logging.h"
#include "support/process/exit_status.h"

// `folder` joined with `name` as pathcat() does; class paths have their own limit.
static std::string joined(const char* folder, const std::string& name) {
  std::string path = folder;
  if (path.empty() || path.back() != '/') {
    path += '/';
  }
  return path + name;
}

static void requireLength(size_t length, int size, const char* what) {
  if (length >= static_cast<size_t>(size)) {
    logError("Unable to launch: %s of %zu bytes does not fit its %d bytes\n", what, length,
             size - 1);
    failProcess(EXIT_STATUS_FAILURE, Failure::InstallationDamaged);
  }
}

static void addClassPathEntry(Launch* launch, std::string* text) {
  const std::string entry = readText(launch->launchFile.get(), "Classpath Entry");
  std::string path = joined(launch->appFolder, entry);
  requireLength(path.size(), CLASS_PATH_ENTRY_SIZE, "a class path entry");
  if (!text->empty()) {
    *text += ':';
  }
  *text += path;
  requireLength(text->size(), CLASS_PATH_SIZE, "the class path");
  appendText(&launch->classPath, toNativePath(path.data()));
}

void addClassPath(Launch* launch) {
  appendText(&launch->commandLine, "-cp");
  logMessage("[Extractor] Building classpath\n");
  const long count = readInt(launch->launchFile.get(), "Classpath Count");
  requireRoom(launch->classPath, count);
  std::string text;
  for (long i = 0; i < count; ++i) {
    addClassPathEntry(launch, &text);
  }
  appendText(&launch->commandLine, toNativePath(text.data()));
}
