#ifndef QUORVANE_TOOLS_BUILD_BUILD_PROJECT_H
#define QUORVANE_TOOLS_BUILD_BUILD_PROJECT_H

#include <string>
#include <vector>

#include "tools/build/build_options.h"
#include "tools/objects/target.h"
#include "tools/project/project_file.h"

// The project of a build, and what it becomes for each of its targets.

namespace tools {

// One target of a build.
struct TargetBuild {
  Target target;
  bool isNamed;  // by the project or on the command line, not by the executables
  // The project for this target alone: its runtime and its addresses are those of the target.
  Project project;
  std::string executables;  // the folder of launcher, extractor and lzma64
  std::string site;         // the update site's place in the output folder
};

// Reads and checks the project with what the options override. `targets` in it is never empty.
// Throws InputError.
Project projectOf(const BuildOptions& options);

// Returns the targets of the project in its order. Throws InputError, saying what to do, if a
// target has no runtime or no executables.
std::vector<TargetBuild> targetsOf(const Project& project, const BuildOptions& options);

// Throws InputError if the output folder is inside a folder that is packed.
void requireApart(const BuildOptions& options, const Project& project);

}  // namespace tools

#endif
