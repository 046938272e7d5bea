#include "tools/system/last_lines.h"

#include <deque>
#include <fstream>

namespace tools {

std::string lastLines(const std::string& path, size_t count,
                      const std::function<bool(const std::string&)>& isLeftOut) {
  std::ifstream in(path);
  std::deque<std::string> lines;
  for (std::string line; std::getline(in, line);) {
    if (isLeftOut && isLeftOut(line)) {
      continue;
    }
    lines.push_back(line);
    if (lines.size() > count) {
      lines.pop_front();
    }
  }
  std::string text;
  for (const std::string& line : lines) {
    text += "\n  " + line;
  }
  return text;
}

}  // namespace tools
