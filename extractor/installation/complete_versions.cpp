#include "extractor/installation/complete_versions.h"

#include <algorithm>
#include <string>
#include <vector>

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

static const char* flawOf(bool isRuntime, const std::string& folder) {
  if (!isFolder(folder.c_str())) {
    return NO_FOLDER_FLAW;
  }
  return isRuntime ? flawOfRuntimeFolder(folder)
                   : flawOfLaunchFile(childPath(folder, LAUNCH_FILE_NAME).c_str());
}

static bool isComplete(const char* masterFolder, bool isRuntime, const std::string& entry) {
  const char* flaw = flawOf(isRuntime, childPath(masterFolder, entry));
  if (flaw != nullptr) {
    logMessage("[Install] %s does not count: %s\n", entry.c_str(), flaw);
  }
  return flaw == nullptr;
}

bool findNewestComplete(const char* masterFolder, const char* name, bool isRuntime, long* version) {
  std::vector<std::string> entries;
  if (!listNames(openFolder(masterFolder), &entries)) {
    return false;
  }
  *version = -1;
  for (const std::string& entry : entries) {
    if (checkAppFolderName(entry.c_str(), name) == 0 &&
        isComplete(masterFolder, isRuntime, entry)) {
      *version = std::max(*version, pickVersionFromAppFolderName(entry.c_str()));
    }
  }
  return true;
}
