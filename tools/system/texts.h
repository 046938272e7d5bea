#ifndef QUORVANE_TOOLS_SYSTEM_TEXTS_H
#define QUORVANE_TOOLS_SYSTEM_TEXTS_H

#include <string>
#include <vector>

namespace tools {

// Returns whether the text begins with `start`, or equals it.
bool startsWith(const std::string& text, const std::string& start);

// Returns whether the text ends with `end`, or equals it.
bool endsWith(const std::string& text, const std::string& end);

// Returns the texts joined with `separator` between them.
std::string joined(const std::vector<std::string>& texts, const std::string& separator);

}  // namespace tools

#endif
