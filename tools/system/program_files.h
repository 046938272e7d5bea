#ifndef QUORVANE_TOOLS_SYSTEM_PROGRAM_FILES_H
#define QUORVANE_TOOLS_SYSTEM_PROGRAM_FILES_H

#include <string>

namespace tools {

// Where the packager's companions lie: in the build folder or where they were installed.
struct ProgramFiles {
  std::string executables;  // the folder of launcher, extractor and lzma64
  std::string updaterJar;   // the updater of projects that name none
};

// Finds them beside the running packager, whose argv[0] is `program`. A path is returned even when
// nothing stands there; using it then says so.
ProgramFiles findProgramFiles(const std::string& program);

}  // namespace tools

#endif
