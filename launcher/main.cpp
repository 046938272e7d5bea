// The Launcher. Two threads:
//
// - The main thread reads the command line and the Tail record, picks the JRE folder, loads the
//   JRE's bundle and creates the application object. Then it starts the launch thread, sets up the
//   menu and runs the Cocoa event loop, which the JVM's window toolkit needs.
// - The launch thread creates the JVM and runs the Java program. When that is over it ends
//   the whole process with the result; the event loop is not asked to stop.
//
// The globals that the launch thread reads are written before it starts and never changed after.

#include <pthread.h>
#include <unistd.h>

#include <cstdio>

#include "launcher/app_shell.h"
#include "launcher/application.h"
#include "launcher/arguments.h"
#include "launcher/bundle_loader.h"
#include "launcher/install_locations.h"
#include "launcher/jvm_launch.h"
#include "launcher/tail_marker.h"
#include "launcher/tail_reader.h"
#include "launcher/url_events.h"
#include "launcher/version_folders.h"
#include "platform/process_end.h"
#include "support/exit_status.h"
#include "support/logging.h"
#include "support/paths.h"
#include "support/strings.h"

void* run(void*);

void* run(void*) {
  if (clazz == nullptr) {
    printf("[ERROR] No class specified. Exiting...\n");
    endProcess(EXIT_STATUS_FAILURE);
  }
  endProcess(launchJavaJNI(clazz, jreFolder, jvmArgumentsCount, jvmArguments, classPathArrayCount,
                           classPathArray, appArgumentsCount, appArguments));
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

// Sets jreFolder to the newest complete JRE in the master folder.
static void chooseJreFolder(const char* masterFolder) {
  const char* jreName = getJREName(masterFolder);
  logMessage("[Launcher] JRE name is is %s\n", jreName);
  const char* folderName = pickAndAllocLatestFromMaster(masterFolder, jreName);
  if (folderName == nullptr) {
    logMessage("[Launcher] *************************** No complete JRE folder for %s in %s\n",
               jreName, masterFolder);
    endProcess(EXIT_STATUS_FAILURE);
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
  // Before the event loop runs, so that the URL that started the application is not lost.
  registerOSXEventListener();
}

static void startLaunchThread() {
  pthread_t thread;
  if (pthread_create(&thread, nullptr, run, nullptr) != 0) {
    logMessage("[Launcher] *************************** Could not start the launch thread\n");
    endProcess(EXIT_STATUS_FAILURE);
  }
  pthread_detach(thread);
}

static void runEventLoop() {
  void* pool = createAutoreleasePool();
  logMessage("[Launcher] About to cload OSX UI NIB");
  loadOSXUINib("");
  activateApplication();
  runApplication();
  drainAutoreleasePool(pool);
}

int main(int argc, char** argv) {
  if (argc < 1) {
    return EXIT_STATUS_FAILURE;
  }
  prepareApplication(argv);
  marker = allocAndInitMarker();
  parseArguments(argc, argv);
  logCommandLine(argc, argv);
  extractTail(argv[0]);
  char masterFolder[PATH_BUFFER_SIZE];
  locateMasterFolder(masterFolder);
  chooseJreFolder(masterFolder);
  loadJreBundle();
  createApplicationObject();
  startLaunchThread();
  runEventLoop();
  // The loop was stopped. The launch thread ends the process; wait for that.
  while (true) {
    pause();
  }
}
