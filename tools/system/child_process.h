#ifndef QUORVANE_TOOLS_SYSTEM_CHILD_PROCESS_H
#define QUORVANE_TOOLS_SYSTEM_CHILD_PROCESS_H

#include <string>
#include <vector>

namespace tools {

// Returns the texts in the form of a program's arguments or environment: ended by a null pointer.
// They point into `texts`.
std::vector<char*> vectorOf(const std::vector<std::string>& texts);

// Runs the program arguments[0], a path, with this process's streams and waits for its end. Throws
// InputError if it cannot be started or ends with a status other than 0.
void runProgram(const std::vector<std::string>& arguments);

// Runs the program arguments[0], a path, in the folder `folder` with empty standard input and
// returns its standard output. Throws InputError, with its other output except stack traces, if it
// cannot be started or ends with a status other than 0.
std::string runForOutput(const std::vector<std::string>& arguments, const std::string& folder);

}  // namespace tools

#endif
