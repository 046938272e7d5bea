#ifndef QUORVANE_EXTRACTOR_VERSIONS_HAND_OVER_H
#define QUORVANE_EXTRACTOR_VERSIONS_HAND_OVER_H

struct ExtractorRun;

// The ends of a run. Main thread.

// Launches the newest installed updater without installing. An elevated run ends without a launch.
[[noreturn]] void launchWithoutExtraction(ExtractorRun& run);

// Ends the splash and launches the newest updater after an installation. An elevated run ends
// without a launch; without an updater the process ends with status 1 after a logged error line.
[[noreturn]] void launchInstalled(ExtractorRun& run);

// Runs the compatibility probe of the installed updater `guFolderName` on the system's Java
// executable `java`. Returns its exit status, or -1.
[[nodiscard]] int probeSystemJava(const ExtractorRun& run, const char* guFolderName,
                                  const char* java);

// On this platform only ends the process with status 1: a run that needs more rights is not
// restarted with them.
[[noreturn]] void doElevatedSetupAndLaunch(const char*, int, char**, bool, const char*,
                                           const char*);

#endif
