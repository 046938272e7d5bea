#include "tools/program_files.h"

#include <cstdlib>
#include <filesystem>
#include <sstream>

namespace fs = std::filesystem;

namespace tools {

// The path of the running program: as it was called, or where PATH finds it.
static fs::path pathOf(const std::string& program) {
  if (program.find('/') != std::string::npos) {
    return program;
  }
  const char* path = getenv("PATH");
  std::istringstream folders(path == nullptr ? "" : path);
  std::error_code ignored;
  for (std::string folder; std::getline(folders, folder, ':');) {
    const fs::path candidate = fs::path(folder.empty() ? "." : folder) / program;
    if (fs::is_regular_file(candidate, ignored)) {
      return candidate;
    }
  }
  return program;
}

ProgramFiles findProgramFiles(const std::string& program) {
  std::error_code ignored;
  const fs::path folder = fs::weakly_canonical(pathOf(program), ignored).parent_path();
  const fs::path installed = folder.parent_path() / "lib/quorvane";
  if (fs::is_directory(installed, ignored)) {
    return {installed, installed / "updater.jar"};
  }
  return {folder, folder.parent_path() / "examples/updater/updater.jar"};
}

}  // namespace tools
