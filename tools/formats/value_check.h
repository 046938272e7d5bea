#ifndef QUORVANE_TOOLS_FORMATS_VALUE_CHECK_H
#define QUORVANE_TOOLS_FORMATS_VALUE_CHECK_H

#include <string>

// The required form of texts. Each function returns, for appending to a message, what is wrong and
// what would be right, or an empty text.

namespace tools {

// The oldest accepted Java version, or nothing.
[[nodiscard]] std::string faultOfRequiredJava(const std::string& version);

// The update URL.
[[nodiscard]] std::string faultOfUpdateUrl(const std::string& url);

// Not a check: returns the host of an http or https URL, in small letters, without user and port.
// An IPv6 address keeps its brackets.
std::string hostOf(const std::string& url);

}  // namespace tools

#endif
