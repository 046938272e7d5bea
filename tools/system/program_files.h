#ifndef QUORVANE_TOOLS_SYSTEM_PROGRAM_FILES_H
#define QUORVANE_TOOLS_SYSTEM_PROGRAM_FILES_H

#include <string>

namespace tools {

// The location of the packager's companion files: in the build folder or the installation.
struct ProgramFiles {
  std::string executables;  // the folder of launcher, extractor and lzma64
  std::string updaterJar;   // the default updater
};

// Finds them relative to the running packager, whose argv[0] is `program`. A path is returned even
// if nothing exists there; using it reports that.
ProgramFiles findProgramFiles(const std::string& program);

}  // namespace tools

#endif
