#ifndef QUORVANE_TOOLS_VERIFY_LAUNCH_CHECK_H
#define QUORVANE_TOOLS_VERIFY_LAUNCH_CHECK_H

#include <string>
#include <vector>

#include "tools/formats/launch_file_writer.h"

namespace tools {

// Returns why the product could not start what the launch file describes, a line each: what does
// not fit the lists that a launch fills, and class path entries that would be split. Options that
// an installation remembers and command-line arguments take additional room.
[[nodiscard]] std::vector<std::string> faultsOfLaunch(const LaunchFile& file);

}  // namespace tools

#endif
