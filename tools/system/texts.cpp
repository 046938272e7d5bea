#include "tools/system/texts.h"

namespace tools {

bool startsWith(const std::string& text, const std::string& start) {
  return text.compare(0, start.size(), start) == 0;
}

bool endsWith(const std::string& text, const std::string& end) {
  return text.size() >= end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

std::string joined(const std::vector<std::string>& texts, const std::string& separator) {
  std::string all;
  for (size_t i = 0; i < texts.size(); ++i) {
    all += (i == 0 ? "" : separator) + texts[i];
  }
  return all;
}

}  // namespace tools
