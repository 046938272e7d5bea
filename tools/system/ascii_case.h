#ifndef QUORVANE_TOOLS_SYSTEM_ASCII_CASE_H
#define QUORVANE_TOOLS_SYSTEM_ASCII_CASE_H

#include <string>

namespace tools {

// Returns the text with A to Z in lower case. Names that are then equal are the same name on a
// usual macOS volume.
std::string lowerCase(std::string text);

// Returns whether the texts are equal, ignoring the case of A to Z.
bool isSameButForCase(const std::string& first, const std::string& second);

}  // namespace tools

#endif
