#include <sys/wait.h>

#include <cerrno>

#include "launch/launch_app.h"
#include "launch/launch_steps.h"
#include "launcher/jvm/bundle_loader.h"
#include "launcher/jvm/java_host.h"
#include "launcher/jvm/jvm_launch.h"
#include "support/failure/failure.h"
#include "support/log/logging.h"
#include "support/process/spawner.h"
#include "support/process/start_program.h"

static int spawnCommandLine(Launch* launch, pid_t* child) {
  return startProgram(child, launch->executable, launch->commandLine.entries.data());
}

static void loadRuntimeBundle(const char* jreFolder) {
  char path[PATH_BUFFER_SIZE];
  loadOSXBundle(appendToPath(setPath(path, jreFolder), ".plugin"));
}

static void endJniSection(int code) {
  logMessage("[Extractor] Return code for JNI launch was %d\n", code);
  logEndSection("JNI Launch\n");
}

[[noreturn]] static void endAfterJava() {
  endJniSection(0);
  endWithZeroAfter(0);
}

static bool startInProcess(Launch* launch, const char* jreFolder) {
  logMessage("[Extractor] Force spawn is %d so attempting to launch via JNI\n", forceSpawn);
  logStartSection("JNI Launch\n");
  if (!launch->appName.empty()) {
    setHostedName(launch->appName.c_str());
  }
  setEndForHeldMainThread(endAfterJava);
  const int code =
      launchJavaJNI(launch->mainClass.c_str(), jreFolder, textCount(launch->jvmOptions),
                    launch->jvmOptions.entries.data(), textCount(launch->classPath),
                    launch->classPath.entries.data(), textCount(launch->appArguments),
                    launch->appArguments.entries.data());
  endJniSection(code);
  if (code != 0) {
    logMessage("[Extractor] JNI launch failed. Attempting legacy spawn instead\n");
  }
  return code == 0;
}

static int startAsChild(Launch* launch, pid_t* child) {
  logMessage("[Extractor] Attempting spawn launch\n");
  logStartSection("Spawn launch\n");
  closeLoggedFile();
  const int error = spawnCommandLine(launch, child);
  if (error != 0) {
    logError("Launch Error %d.\n", error);
    noteFailure(Failure::NotStarted);
  }
  return error;
}

// A child started because Java did not run in this process may end for the same reason, and nobody
// would see its output. If an alert can say so, the child gets some seconds for that.
static bool failsLikeTheFirst(pid_t child) {
  constexpr int kSeconds = 5;
  return isAlertAllowed() && childFailsWithin(child, kSeconds);
}

static int startApplication(Launch* launch) {
  char jreFolder[PATH_BUFFER_SIZE];
  setPath(jreFolder, launch->request.masterFolder, launch->jreFolderName.c_str());
  logMessage("[Extractor] JRE folder is %s\n", jreFolder);
  loadRuntimeBundle(jreFolder);
  if (!forceSpawn && startInProcess(launch, jreFolder)) {
    return 0;
  }
  pid_t child = 0;
  const int error = startAsChild(launch, &child);
  const bool isSecondAttempt = !forceSpawn && error == 0;
  return isSecondAttempt && failsLikeTheFirst(child) ? ECHILD : error;
}

// Waits for the probe and returns its exit status, or -1 if a signal ended it.
static int statusOf(pid_t child) {
  int status = waitForChild(child);
  return status >= 0 && WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

static int runProbe(Launch* launch) {
  closeLoggedFile();
  pid_t child = 0;
  const int error = spawnCommandLine(launch, &child);
  if (error != 0) {
    logMessage("Launch Error %d.\n", error);
    return -1;
  }
  return statusOf(child);
}

int startLaunch(Launch* launch) {
  switch (launch->request.launchClass) {
    case LAUNCH_APPLICATION:
      return startApplication(launch);
    case LAUNCH_COMPATIBILITY:
      return runProbe(launch);
    default:
      return -1;
  }
}
