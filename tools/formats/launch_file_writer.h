#ifndef QUORVANE_TOOLS_FORMATS_LAUNCH_FILE_WRITER_H
#define QUORVANE_TOOLS_FORMATS_LAUNCH_FILE_WRITER_H

#include <string>
#include <vector>

#include "launch/launch_file.h"

// The launch file of an application's folder, and the options file that remembers
// the JVM options which last worked with a runtime. docs/formats.md shows both byte for byte.

namespace tools {

constexpr long OLDEST_LAUNCH_FILE_VERSION = 1;
constexpr long NEWEST_LAUNCH_FILE_VERSION = 6;

// The fields in file order; the comment gives the version that added a field.
struct LaunchFile {
  long version = NEWEST_LAUNCH_FILE_VERSION;
  std::string mainClass;
  std::string updateClass;
  std::string appName;
  std::string icon;
  bool urlRequired = false;
  long maximumHeapMegabytes = 0;       // 0 leaves it to the runtime
  long initialHeapMegabytes = 0;       // the same
  std::vector<std::string> classPath;  // relative to the application's folder
  std::vector<std::string> arguments;
  std::string compatibilityClass;       // 3
  std::string postInstallClass;         // 4
  std::string preUninstallClass;        // 4
  std::vector<std::string> jvmOptions;  // 5
  bool mustFork = false;                // 6
};

// Returns the launch file's bytes. Throws InputError if the version is unknown, a value is set that
// the version has no field for, a text does not fit its field, a number is negative, or the
// application's name is empty or contains a '/'.
std::string encodeLaunchFile(const LaunchFile& file);

// Decodes `bytes`. Throws InputError, naming the field, if they are truncated or a number is
// invalid, and if bytes follow the last field.
LaunchFile decodeLaunchFile(const std::string& bytes);

// Returns the bytes of an options file. Throws InputError if an option does not fit its field.
std::string encodeOptionsFile(const std::vector<std::string>& options);

}  // namespace tools

#endif
