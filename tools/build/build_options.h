#ifndef QUORVANE_TOOLS_BUILD_BUILD_OPTIONS_H
#define QUORVANE_TOOLS_BUILD_BUILD_OPTIONS_H

#include <string>
#include <vector>

#include "tools/build/program_files.h"
#include "tools/system/progress.h"

namespace tools {

// What the command line of 'build' says.
struct BuildOptions {
  std::string project = "quorvane.toml";
  std::string output = "dist";
  ProgramFiles files;
  std::string executables;  // the folder of those for the one target; empty for the packager's
  // These override the project's values, unless empty.
  std::vector<std::string> targets;
  std::string appVersion;
  std::string updateUrl;
  std::string key;
  std::string runtime;
  std::string jdk;
  bool keepsBundles = false;
  bool makesLauncher = false;
  bool avoidsCache = false;
  int jobs = 0;  // how many run side by side; 0 for what suits the machine
  bool isQuiet = false;
  bool isVerbose = false;

  Verbosity verbosity() const {
    return isQuiet ? Verbosity::quiet : isVerbose ? Verbosity::verbose : Verbosity::normal;
  }
};

}  // namespace tools

#endif
