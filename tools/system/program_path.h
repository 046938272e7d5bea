#ifndef QUORVANE_TOOLS_SYSTEM_PROGRAM_PATH_H
#define QUORVANE_TOOLS_SYSTEM_PROGRAM_PATH_H

#include <string>

namespace tools {

// Returns the path of the first file `program` in the folders that PATH lists, or an empty text.
// An empty entry of PATH is the current folder; it is left out unless `inCurrentFolder` is set.
std::string findInPath(const std::string& program, bool inCurrentFolder);

}  // namespace tools

#endif
