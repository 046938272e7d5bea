#include "tools/system/last_lines.h"

#include <deque>
#include <fstream>

namespace tools {

std::string lastLines(const std::string& path, size_t count) {
  std::ifstream in(path);
  std::deque<std::string> lines;
  for (std::string line; std::getline(in, line);) {
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
