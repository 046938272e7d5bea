#ifndef QUORVANE_TOOLS_BUILD_BUILD_H
#define QUORVANE_TOOLS_BUILD_BUILD_H

#include "tools/build/build_options.h"

namespace tools {

// Makes the downloads, their index and the update sites of all targets of a project, and prints
// what it made. Throws InputError; the output folder then has what it had before.
void runBuild(const BuildOptions& options);

}  // namespace tools

#endif
