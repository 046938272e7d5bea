// The Launcher. Two threads:
//
// - The main thread reads the command line and the Tail record, picks the JRE folder, loads the
//   JRE's bundle and creates the application object. Then it starts the launch thread, sets up the
//   menu and runs the Cocoa event loop, which the JVM's window toolkit needs.
// - The launch thread creates the JVM and runs the Java program. When that is over it ends
//   the whole process with the result; the event loop is not asked to stop.
//
// With -XstartOnFirstThread there is one thread: Java runs on it, and its window toolkit makes the
// application object and runs the event loop.
//
// The globals that the launch thread reads are written before it starts and never changed after.

#include <pthread.h>

#include <cstdio>
#include <cstring>

#include "formats/tail_marker.h"
#include "launcher/arguments.h"
#include "launcher/installation/install_locations.h"
#include "launcher/installation/silent_word.h"
#include "launcher/installation/tail_reader.h"
#include "launcher/installation/version_folders.h"
#include "launcher/jvm/bundle_loader.h"
#include "launcher/jvm/java_host.h"
#include "launcher/jvm/java_thread.h"
#include "launcher/jvm/jvm_launch.h"
#include "launcher/jvm/startable_runtime.h"
#include "launcher/shell/app_shell.h"
#include "launcher/shell/application.h"
#include "launcher/shell/event_loop.h"
#include "support/failure/failure.h"
#include "support/files/file_kind.h"
#include "support/files/paths.h"
#include "support/log/logging.h"
#include "support/process/exit_status.h"
#include "support/process/process_start.h"
#include "support/text/strings.h"

void* run(void*);

void* run(void*) {
  if (clazz == nullptr) {
    printf("[ERROR] No class specified. Exiting...\n");
    failProcess(EXIT_STATUS_FAILURE, Failure::NoMainClassNamed);
  }
  endWithResult(launchJavaJNI(clazz, jreFolder, jvmArgumentsCount, jvmArguments,
                              classPathArrayCount, classPathArray, appArgumentsCount,
                              appArguments));
}

static void logCommandLine(int argc, char** argv) {
  logMessage("----- Starting Launcher -----\n");
  for (int i = 0; i < argc; ++i) {
    logMessage("[Launcher]\t Arg[%d]=%s\n", i, argv[i]);
  }
}

// Writes the master folder of the Tail's application into the path buffer `path`.
static void locateMasterFolder(char* path) {
  setPath(path, locateSharedDirectory(install_type), "Quorvane-");
  appendToPath(path, app_name);
  logMessage("[Launcher] Master folder is %s\n", path);
}

// Started by the desktop, the Launcher has a log file, as nobody sees its standard output. What it
// logs before the file's folder is known is kept for it.
static void keepLinesForLogFile() {
  if (isStartedByDesktop()) {
    keepEarlyLines();
  }
}

// A name with a '/' leads elsewhere: there is no log file then. Nor is there one for an application
// that is not installed: the Launcher creates no master folder.
static void openLogFile(const char* masterFolder) {
  if (!isStartedByDesktop()) {
    return;
  }
  if (strchr(app_name, '/') == nullptr && isFolder(masterFolder)) {
    setupLauncherLogging(masterFolder);
  } else {
    setFileToLogTo(nullptr);  // stops keeping messages for it
  }
}

static void settleAlert(int argc, char** argv) {
  setAlertName(app_name);
  allowAlert(!isSilent(silent_parameter, argc, argv));
}

// Sets jreFolder to the newest complete JRE in the master folder that can start.
static void chooseJreFolder(const char* masterFolder) {
  const char* jreName = getJREName(masterFolder);
  logMessage("[Launcher] JRE name is is %s\n", jreName);
  const char* folderName =
      pickAndAllocLatestToLaunch(masterFolder, jreName, flawOfRuntimeInProcess);
  if (folderName == nullptr) {
    logMessage("[Launcher] *************************** No complete JRE folder for %s in %s\n",
               jreName, masterFolder);
    failProcess(EXIT_STATUS_FAILURE, Failure::NoRuntime);
  }
  logMessage("[Launcher] Located existing JRE runtime = %s\n", folderName);
  jreFolder = static_cast<char*>(allocZeroed(PATH_BUFFER_SIZE));
  setPath(jreFolder, masterFolder, folderName);
  logMessage("[Launcher] JRE path is %s\n", jreFolder);
}

static void loadJreBundle() {
  char path[PATH_BUFFER_SIZE] = "";
  appendToPath(pathcat(path, jreFolder), ".plugin");
  loadOSXBundle(path);
}

static void createApplicationObject() {
  logMessage("[Launcher] About to create NSApplication");
  createApplication();
  logMessage("[Launcher] Created NSApplication");
}

static void startLaunchThread(size_t stackSize) {
  pthread_t thread;
  prepareEventLoop();
  if (!startJavaThread(&thread, stackSize, run, nullptr)) {
    logMessage("[Launcher] *************************** Could not start the launch thread\n");
    failProcess(EXIT_STATUS_FAILURE, Failure::NotStarted);
  }
  pthread_detach(thread);
}

// Nothing ends the loop: the launch thread ends the process.
static void runEventLoop() {
  void* pool = createAutoreleasePool();
  logMessage("[Launcher] About to cload OSX UI NIB");
  loadOSXUINib("");
  activateApplication();
  runEventLoopUntilEnded();
  drainAutoreleasePool(pool);
}

int main(int argc, char** argv) {
  beginProcess();
  if (argc < 1) {
    failProcess(EXIT_STATUS_FAILURE, Failure::NotStarted);
  }
  keepLinesForLogFile();
  prepareApplication(argv);
  marker = allocAndInitMarker();
  parseArguments(argc, argv);
  logCommandLine(argc, argv);
  extractTail(argv[0]);
  settleAlert(argc, argv);
  char masterFolder[PATH_BUFFER_SIZE];
  locateMasterFolder(masterFolder);
  openLogFile(masterFolder);
  chooseJreFolder(masterFolder);
  loadJreBundle();
  const HostOptions host = prepareHost(jvmArgumentsCount, jvmArguments);
  if (host.startOnFirstThread) {
    run(nullptr);
  }
  createApplicationObject();
  startLaunchThread(host.stackSize);
  runEventLoop();
}
