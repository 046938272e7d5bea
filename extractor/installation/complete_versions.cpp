#include "extractor/installation/complete_versions.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "extractor/run/run.h"
#include "extractor/runtime/jre_layout.h"
#include "launch/launch_file.h"
#include "launcher/installation/version_folders.h"
#include "support/files/file_kind.h"
#include "support/files/folder_walk.h"

// A runtime's bundle has the Java home in it, its plain folder is one.
static bool isCompleteRuntime(const std::string& folder) {
  return holdsJava(folder.c_str()) || holdsJava(childPath(folder, "Contents/Home").c_str());
}

static bool isComplete(const ExtractorRun& run, const char* name, const std::string& folder) {
  if (!isFolder(folder.c_str())) {
    return false;
  }
  return strcmp(name, run.jreName) == 0 ? isCompleteRuntime(folder)
                                        : isPlainFile(childPath(folder, LAUNCH_FILE_NAME).c_str());
}

bool findNewestComplete(const ExtractorRun& run, const char* name, long* version) {
  std::vector<std::string> entries;
  if (!listNames(openFolder(run.masterFolder), &entries)) {
    return false;
  }
  *version = -1;
  for (const std::string& entry : entries) {
    if (checkAppFolderName(entry.c_str(), name) == 0 &&
        isComplete(run, name, childPath(run.masterFolder, entry))) {
      *version = std::max(*version, pickVersionFromAppFolderName(entry.c_str()));
    }
  }
  return true;
}
