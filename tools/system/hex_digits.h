#ifndef QUORVANE_TOOLS_SYSTEM_HEX_DIGITS_H
#define QUORVANE_TOOLS_SYSTEM_HEX_DIGITS_H

#include <string>

namespace tools {

// Returns the bytes as pairs of lower-case hexadecimal digits.
std::string hexOf(const std::string& bytes);

}  // namespace tools

#endif
