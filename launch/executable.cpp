#include <unistd.h>

#include <cstring>

#include "launch/launch_app.h"
#include "launch/launch_steps.h"
#include "launcher/installation/version_folders.h"
#include "launcher/jvm/startable_runtime.h"
#include "support/failure/failure.h"
#include "support/files/file_operations.h"
#include "support/log/logging.h"
#include "support/process/exit_status.h"

static const char kJava[] = "java";

static bool pickRuntime(Launch* launch) {
  const Block<char> name(
      pickAndAllocLatestToLaunch(launch->request.masterFolder, launch->request.jre, flawOfRuntime));
  if (name == nullptr) {
    return false;
  }
  launch->jreFolderName = name.get();
  return true;
}

// Writes the path of `name` among the private runtime's executables into `path`.
static char* privateExecutable(const Launch& launch, const char* name, char* path) {
  return setPath(path, launch.request.masterFolder, launch.jreFolderName.c_str(), "bin", name);
}

// If the copy cannot be made, Java itself is started.
static void makeNamedExecutable(Launch* launch) {
  char java[PATH_BUFFER_SIZE];
  privateExecutable(*launch, kJava, java);
  if (!copyFileWhole(java, launch->executable, 0777)) {
    logError("Error setting app binary executable!\n");
    setPath(launch->executable, java);
  }
}

// The executable is the runtime's Java under the application's name, so that the process has that
// name. A name that would lead out of the folder gets no copy: Java itself is started.
static void choosePrivateExecutable(Launch* launch) {
  if (strchr(launch->appName.c_str(), '/') != nullptr) {
    logError("Error setting app binary executable!\n");
    privateExecutable(*launch, kJava, launch->executable);
    return;
  }
  privateExecutable(*launch, launch->appName.c_str(), launch->executable);
  if (!doesFileExist(launch->executable) || access(launch->executable, X_OK) != 0) {
    makeNamedExecutable(launch);
  }
}

static void chooseOptionsFile(Launch* launch) {
  setPath(launch->optionsFile, launch->request.masterFolder, "QVApps",
          "JRE-LastSuccessfulOptions-");
  appendToPath(launch->optionsFile, pathToFile(launch->jreFolderName.c_str()));
  launch->hasOptionsFile = true;
  logMessage("[Extractor] JRE LSO file is %s\n", launch->optionsFile);
}

static void choosePrivateRuntime(Launch* launch, bool found) {
  if (!found) {
    logError("No private JRE available!\n");
    failProcess(EXIT_STATUS_FAILURE, Failure::NoRuntime);
  }
  logMessage("[Extractor] Using private JRE %s\n", launch->jreFolderName.c_str());
  choosePrivateExecutable(launch);
  launch->hasExecutable = true;
  chooseOptionsFile(launch);
}

void chooseExecutable(Launch* launch) {
  const bool found = pickRuntime(launch);
  if (launch->request.launchClass == LAUNCH_COMPATIBILITY) {
    setPath(launch->executable, launch->request.jre);
    launch->hasExecutable = true;
    logMessage("[Extractor] Checking for existing system JRE %s\n", launch->request.jre);
  } else if (launch->request.launchClass == LAUNCH_APPLICATION) {
    choosePrivateRuntime(launch, found);
  }
}
