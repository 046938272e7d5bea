#ifndef QUORVANE_TOOLS_FORMATS_VALUE_CHECK_H
#define QUORVANE_TOOLS_FORMATS_VALUE_CHECK_H

#include <string>

// What texts must look like to be read as they are meant. Each function returns what is wrong and
// right, for a message behind the text, or an empty text.

namespace tools {

// The oldest Java that will do, or nothing.
[[nodiscard]] std::string faultOfRequiredJava(const std::string& version);

// Where updates are.
[[nodiscard]] std::string faultOfUpdateUrl(const std::string& url);

}  // namespace tools

#endif
