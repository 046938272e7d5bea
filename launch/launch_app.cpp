#include "launch/launch_app.h"

#include "launch/launch_steps.h"
#include "support/log/logging.h"
#include "support/process/exit_status.h"
#include "support/process/spawner.h"

bool forceSpawn = false;

static void announce(const LaunchRequest& request) {
  logStartSection("Launching");
  logMessage("[Extractor] Launching '%s' from master folder '%s' of class %d using JRE '%s'\n",
             request.appFolderName, request.masterFolder, request.launchClass, request.jre);
}

static int runLaunch(const LaunchRequest& request) {
  announce(request);
  Launch launch(request);
  setPath(launch.appFolder, request.masterFolder, request.appFolderName);
  readLaunchFileHead(&launch);
  chooseExecutable(&launch);
  beginCommandLine(&launch);
  addClassPath(&launch);
  createProperties(&launch);
  addRememberedOptions(&launch);
  writePropertiesFile(&launch);
  addMainClass(&launch);
  addExtraArguments(&launch);
  readNewerFields(&launch);
  addCommandLineArguments(&launch);
  launch.launchFile.reset();
  return startLaunch(&launch);
}

int launchFromLaunchFile(const char* masterFolder, const char* properties, int argc, char** argv,
                         const char* appFolderName, const char* updateUrl,
                         const char* dynamicUpdateUrl, const char* jre, int launchClass,
                         const char*, bool, const char*, const char* launchedFromDynprops, bool,
                         const char*) {
  return runLaunch({masterFolder, properties, argc, argv, appFolderName, updateUrl,
                    dynamicUpdateUrl, jre, launchClass, launchedFromDynprops});
}

int launchApp(const char* masterFolder, const char* properties, int argc, char** argv,
              const char* appFolderName, const char* updateUrl, const char* dynamicUpdateUrl,
              const char* jre, const char*, bool, const char*, const char* launchedFromDynprops,
              bool, const char*) {
  return runLaunch({masterFolder, properties, argc, argv, appFolderName, updateUrl,
                    dynamicUpdateUrl, jre, LAUNCH_APPLICATION, launchedFromDynprops});
}

bool checkAppJreCompatibility(const char* masterFolder, const char* properties, int argc,
                              char** argv, const char* appFolderName, const char* updateUrl,
                              const char* dynamicUpdateUrl, const char* jre,
                              const char* launchedFromDynprops) {
  return runLaunch({masterFolder, properties, argc, argv, appFolderName, updateUrl,
                    dynamicUpdateUrl, jre, LAUNCH_COMPATIBILITY, launchedFromDynprops}) ==
         EXIT_STATUS_COMPATIBLE;
}

void callVerPatchOn(const char* verpatchExe, const char* targetExe, const char* name) {
  const char* const arguments[] = {
      targetExe, "4.0.0.0",     "/s",     "description",    name, "/s", "ProductName", name,
      "/pv",     "4.0.0.0",     "/s",     "LegalCopyright", " ",  "/s", "Company",     " ",
      "/s",      "FullVersion", "4.0.0.0"};
  const OwnedSpawner spawner(createSpawner());
  setSpawnerExe(spawner.get(), verpatchExe);
  for (const char* argument : arguments) {
    addSpawnerArg(spawner.get(), argument);
  }
  logMessage("[VerPath] Returned %d\n", runSpawnerAndWait(spawner.get()));
}
