#ifndef QUORVANE_TOOLS_SYSTEM_LAST_LINES_H
#define QUORVANE_TOOLS_SYSTEM_LAST_LINES_H

#include <cstddef>
#include <string>

namespace tools {

// Returns the last `count` lines of the text file `path` for appending to a message: each after a
// line break and indented. Empty for an unreadable file.
std::string lastLines(const std::string& path, size_t count);

}  // namespace tools

#endif
