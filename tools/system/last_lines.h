#ifndef QUORVANE_TOOLS_SYSTEM_LAST_LINES_H
#define QUORVANE_TOOLS_SYSTEM_LAST_LINES_H

#include <cstddef>
#include <functional>
#include <string>

namespace tools {

// Returns the last `count` lines of the text file `path` for appending to a message: each after a
// line break and indented. Lines that `isLeftOut` is true of do not count. Empty for an unreadable
// file.
std::string lastLines(const std::string& path, size_t count,
                      const std::function<bool(const std::string&)>& isLeftOut = nullptr);

}  // namespace tools

#endif
