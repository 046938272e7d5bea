#ifndef QUORVANE_TOOLS_CHILD_PROCESS_H
#define QUORVANE_TOOLS_CHILD_PROCESS_H

#include <string>
#include <vector>

namespace tools {

// Runs the program arguments[0], a path, with this process's streams and waits for its end. Throws
// InputError when it cannot be started or ends with anything but status 0.
void runProgram(const std::vector<std::string>& arguments);

}  // namespace tools

#endif
