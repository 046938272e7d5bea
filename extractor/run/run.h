#ifndef QUORVANE_EXTRACTOR_RUN_RUN_H
#define QUORVANE_EXTRACTOR_RUN_RUN_H

#include <cstddef>
#include <cstdio>
#include <string>

#include "archive/trust.h"
#include "launch/launch_properties.h"
#include "support/failure/failure.h"
#include "support/files/paths.h"

// What one run of the Extractor knows. There is one record per process; the steps of the flow fill
// it in from top to bottom, and all it points to lives until the process ends.

// The properties of the params file that the Extractor itself understands.
struct DynamicProperties {
  char* updateUrl;  // null if the params file has none
  bool autotest;
  bool noUi;
  bool requireSignature;
  unsigned char* splashImage;  // null when there is none
  size_t splashImageLength;
};

// The fields of the Tail record, in their order.
struct TailFields {
  char* appName;
  char* appVersion;
  char* jreVersion;
  char* guVersion;
  char* minSplashMs;
  char* publicKeyHex;
  char* canOverrideSplash;
  char* installType;
  char* silentParameter;
  char* requiredJavaVersion;
  char* updateUrl;
};

struct ExtractorRun {
  // As invoked.
  char* executablePath;
  int argumentCount;
  char** arguments;
  bool elevated;
  char* absoluteWrapperPath;
  char* executableDir;

  // From the params file and the Tail record.
  char* launchProperties;  // LAUNCH_PROPERTIES_SIZE bytes, see launch/launch_properties.h
  DynamicProperties dynamic;
  TailFields tail;
  FILE* tailStream;  // positioned at the next carried archive
  char jreName[PATH_BUFFER_SIZE];
  bool silent;
  Trust trust;            // what archives are verified with
  std::string updateURL;  // what downloads use
  char* sharedDir;
  char masterFolder[PATH_BUFFER_SIZE];

  // What is installed: folder names in the master folder, null if there is none.
  char* latestGU;
  char* latestJRE;

  // Folders and tools of an installation.
  char guFolder[PATH_BUFFER_SIZE];
  char guTemp[PATH_BUFFER_SIZE];
  char appFolder[PATH_BUFFER_SIZE];
  char appTemp[PATH_BUFFER_SIZE];
  char jreFolder[PATH_BUFFER_SIZE];
  char jreTemp[PATH_BUFFER_SIZE];
  char jreVersion[51];
  char lzmaPath[PATH_BUFFER_SIZE];
  char* unpack200Path;
};

// What a launch is told of update URLs: the static one, or "D" where the params file's is used; and
// the params file's, null when it names none. They end in a slash where the run uses them and
// endUpdateUrlInSlash() has run. The texts are the run's.
[[nodiscard]] const char* storedUpdateUrl(const ExtractorRun& run);
[[nodiscard]] const char* dynamicUpdateUrl(const ExtractorRun& run);

// Whether the installer carries a GenericUpdater; whether it carries an application, and so needs
// no network; whether the run must show nothing.
[[nodiscard]] bool carriesUpdater(const ExtractorRun& run);
[[nodiscard]] bool isOffline(const ExtractorRun& run);
[[nodiscard]] bool isQuiet(const ExtractorRun& run);

// Closes the Tail stream. Main thread.
void closeTailStream(ExtractorRun& run);

// Logs the printf-style message as an error and ends the process with EXIT_STATUS_FAILURE, as
// failProcess() does with `failure`, or with Failure::InstallationFailed.
[[noreturn]] void failRun(Failure failure, const char* format, ...)
    __attribute__((format(printf, 2, 3)));
[[noreturn]] void failRun(const char* format, ...) __attribute__((format(printf, 1, 2)));

#endif
