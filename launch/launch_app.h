#ifndef QUORVANE_LAUNCH_LAUNCH_APP_H
#define QUORVANE_LAUNCH_LAUNCH_APP_H

// Starts an installed application, or its runtime compatibility probe, from the launch file in its
// folder. All texts are read only and stay the caller's. The installing thread.

// If set, no launch inside this process is tried: the application is started as a child process.
extern bool forceSpawn;

// The purpose of a launch. Any other number builds everything and writes the properties file, then
// starts nothing.
constexpr int LAUNCH_APPLICATION = 0;    // start the application on the private runtime
constexpr int LAUNCH_COMPATIBILITY = 1;  // run the compatibility class on a system runtime

// Launches `appFolderName`, a folder of `masterFolder`, as its launch file says.
//
//   properties             the properties buffer to hand on (launch/launch_properties.h)
//   argc, argv             command-line arguments to pass on
//   updateUrl              the update URL to hand on, "D" when it is dynamic
//   dynamicUpdateUrl       the dynamic update URL, or null when none was given
//   jre                    the runtime's component name, or for LAUNCH_COMPATIBILITY the path of
//                          the system's Java executable
//   launchedFromDynprops   text to hand on under that name
//
// Unnamed parameters are accepted and ignored.
//
// LAUNCH_APPLICATION returns 0 if the application ran inside this process or was started as a
// child, else the error number of the failed start. If a failure would show an alert
// (support/failure/failure.h), it returns ECHILD for a child that was started after a failed launch
// in this process and fails within seconds. LAUNCH_COMPATIBILITY waits and returns the probe's exit
// status, or -1 if a signal ended it or it could not be started. Other purposes return -1.
// Everything is logged.
//
// Ends the process, after one logged error line, with status 1 if the launch file cannot be opened,
// no private runtime exists or the launch does not fit its lists and buffers, and with
// EXIT_STATUS_PROPERTIES_NOT_WRITTEN if the properties file cannot be written.
int launchFromLaunchFile(const char* masterFolder, const char* properties, int argc, char** argv,
                         const char* appFolderName, const char* updateUrl,
                         const char* dynamicUpdateUrl, const char* jre, int launchClass,
                         const char*, bool, const char*, const char* launchedFromDynprops, bool,
                         const char*);

// launchFromLaunchFile() for LAUNCH_APPLICATION.
int launchApp(const char* masterFolder, const char* properties, int argc, char** argv,
              const char* appFolderName, const char* updateUrl, const char* dynamicUpdateUrl,
              const char* jre, const char*, bool, const char*, const char* launchedFromDynprops,
              bool, const char*);

// launchFromLaunchFile() for LAUNCH_COMPATIBILITY; returns whether the probe ended with
// EXIT_STATUS_COMPATIBLE.
[[nodiscard]] bool checkAppJreCompatibility(const char* masterFolder, const char* properties,
                                            int argc, char** argv, const char* appFolderName,
                                            const char* updateUrl, const char* dynamicUpdateUrl,
                                            const char* jre, const char* launchedFromDynprops);

// Stamps `name` into the version resources of the Windows executable `targetExe` with the tool
// `verpatchExe`, waits for it and logs its result.
void callVerPatchOn(const char* verpatchExe, const char* targetExe, const char* name);

#endif
