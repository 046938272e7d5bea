#include "tools/system/program_path.h"

#include <cstdlib>
#include <filesystem>
#include <sstream>

namespace fs = std::filesystem;

namespace tools {

std::string findInPath(const std::string& program, bool inCurrentFolder) {
  const char* path = getenv("PATH");
  std::istringstream folders(path == nullptr ? "" : path);
  std::error_code ignored;
  for (std::string folder; std::getline(folders, folder, ':');) {
    const fs::path candidate = fs::path(folder.empty() ? "." : folder) / program;
    if ((inCurrentFolder || !folder.empty()) && fs::is_regular_file(candidate, ignored)) {
      return candidate;
    }
  }
  return "";
}

}  // namespace tools
