#include "tools/system/ascii_case.h"

#include <algorithm>

namespace tools {

std::string lowerCase(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(), [](char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  });
  return text;
}

bool isSameButForCase(const std::string& first, const std::string& second) {
  return lowerCase(first) == lowerCase(second);
}

}  // namespace tools
