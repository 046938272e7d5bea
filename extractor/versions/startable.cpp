#include "extractor/versions/startable.h"

#include <string>
#include <vector>

#include "extractor/run/run.h"
#include "formats/names.h"
#include "launch/launch_file.h"
#include "launcher/installation/version_folders.h"
#include "launcher/jvm/startable_runtime.h"
#include "support/files/file_kind.h"
#include "support/files/folder_walk.h"
#include "support/files/paths.h"

static const char* flawOfUpdater(const char* folder) {
  const char* flaw = flawOfLaunchFile(childPath(folder, LAUNCH_FILE_NAME).c_str());
  return flaw != nullptr && isRegularFile(folder) ? NO_FOLDER_FLAW : flaw;
}

// The updater starts the application, so nothing more is known about what it needs.
static const char* flawOfApp(const char* folder) {
  std::vector<std::string> names;
  if (!listNames(openFolder(folder), &names)) {
    return isRegularFile(folder) ? NO_FOLDER_FLAW : nullptr;
  }
  return names.empty() ? "it is empty" : nullptr;
}

static char* allocInstalled(const ExtractorRun& run, const char* component, FlawOfFolder flawOf) {
  return carriesUpdater(run) ? pickAndAllocLatestThatStarts(run.masterFolder, component, flawOf)
                             : pickAndAllocLatestToLaunch(run.masterFolder, component, flawOf);
}

char* allocInstalledUpdater(const ExtractorRun& run) {
  return allocInstalled(run, UPDATER_NAME, flawOfUpdater);
}

char* allocInstalledRuntime(const ExtractorRun& run) {
  return allocInstalled(run, run.jreName, flawOfRuntime);
}

char* allocInstalledApp(const ExtractorRun& run) {
  return allocInstalled(run, run.tail.appName, flawOfApp);
}

char* allocUpdaterToLaunch(const char* masterFolder) {
  return pickAndAllocLatestToLaunch(masterFolder, UPDATER_NAME, flawOfUpdater);
}
