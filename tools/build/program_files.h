#ifndef QUORVANE_TOOLS_BUILD_PROGRAM_FILES_H
#define QUORVANE_TOOLS_BUILD_PROGRAM_FILES_H

#include <string>

#include "tools/objects/target.h"

namespace tools {

// The location of the packager's companion files: in the build folder or the installation.
struct ProgramFiles {
  std::string companions;    // the folder of launcher, extractor and lzma64
  bool isInstalled = false;  // then it has a folder for each target
  std::string updaterJar;    // the default updater
};

// Finds them relative to the running packager, whose argv[0] is `program`. A path is returned even
// if nothing exists there; using it reports that.
ProgramFiles findProgramFiles(const std::string& program);

// Returns the folder of launcher, extractor and lzma64 for `target`: in the build folder those of
// this machine are in the folder itself.
std::string executablesFor(const ProgramFiles& files, const Target& target);

}  // namespace tools

#endif
