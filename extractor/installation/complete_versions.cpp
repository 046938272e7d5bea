#include "extractor/installation/complete_versions.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "extractor/run/run.h"
#include "launch/launch_file.h"
#include "launcher/installation/version_folders.h"
#include "launcher/jvm/startable_runtime.h"
#include "support/files/file_kind.h"
#include "support/files/folder_walk.h"
#include "support/files/paths.h"
#include "support/log/logging.h"

// A runtime's bundle has the Java home in it, its plain folder is one.
static const char* flawOfRuntimeFolder(const std::string& folder) {
  const bool hasNoJava = isDefinitelyMissing(childPath(folder, "bin/java").c_str()) &&
                         isDefinitelyMissing(childPath(folder, "Contents/Home/bin/java").c_str());
  return hasNoJava ? "its java is missing" : damageOfRuntime(folder.c_str());
}

static const char* flawOf(const ExtractorRun& run, const char* name, const std::string& folder) {
  if (!isFolder(folder.c_str())) {
    return NO_FOLDER_FLAW;
  }
  return strcmp(name, run.jreName) == 0
             ? flawOfRuntimeFolder(folder)
             : flawOfLaunchFile(childPath(folder, LAUNCH_FILE_NAME).c_str());
}

static bool isComplete(const ExtractorRun& run, const char* name, const std::string& entry) {
  const char* flaw = flawOf(run, name, childPath(run.masterFolder, entry));
  if (flaw != nullptr) {
    logMessage("[Install] %s does not count: %s\n", entry.c_str(), flaw);
  }
  return flaw == nullptr;
}

bool findNewestComplete(const ExtractorRun& run, const char* name, long* version) {
  std::vector<std::string> entries;
  if (!listNames(openFolder(run.masterFolder), &entries)) {
    return false;
  }
  *version = -1;
  for (const std::string& entry : entries) {
    if (checkAppFolderName(entry.c_str(), name) == 0 && isComplete(run, name, entry)) {
      *version = std::max(*version, pickVersionFromAppFolderName(entry.c_str()));
    }
  }
  return true;
}
