#ifndef QUORVANE_TOOLS_SYSTEM_LAST_LINES_H
#define QUORVANE_TOOLS_SYSTEM_LAST_LINES_H

#include <cstddef>
#include <string>

namespace tools {

// Returns the last `count` lines of the text file `path` for the end of a message: each behind a
// line end and indented. Nothing for a file that cannot be read.
std::string lastLines(const std::string& path, size_t count);

}  // namespace tools

#endif
