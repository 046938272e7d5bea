#ifndef QUORVANE_TOOLS_APPLE_JAR_LIBRARIES_H
#define QUORVANE_TOOLS_APPLE_JAR_LIBRARIES_H

#include <string>
#include <vector>

namespace tools {

// Returns the paths of the native libraries for macOS in the jar `path`, by their names, sorted. A
// file that is not a jar has none. Throws InputError if it cannot be read.
std::vector<std::string> nativeLibrariesIn(const std::string& path);

}  // namespace tools

#endif
