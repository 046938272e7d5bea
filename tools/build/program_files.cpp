#include "tools/build/program_files.h"

#include <filesystem>

#include "tools/system/program_path.h"

namespace fs = std::filesystem;

namespace tools {

// The path of the running program: as called, or as found on the PATH.
static fs::path pathOf(const std::string& program) {
  if (program.find('/') != std::string::npos) {
    return program;
  }
  const std::string found = findInPath(program, true);
  return found.empty() ? program : found;
}

ProgramFiles findProgramFiles(const std::string& program) {
  std::error_code ignored;
  const fs::path folder = fs::weakly_canonical(pathOf(program), ignored).parent_path();
  const fs::path installed = folder.parent_path() / "lib/quorvane";
  if (fs::is_directory(installed, ignored)) {
    return {installed, true, installed / "updater.jar"};
  }
  return {folder, false, folder.parent_path() / "updater/updater.jar"};
}

std::string executablesFor(const ProgramFiles& files, const Target& target) {
  const bool isFlat = !files.isInstalled && target == thisMachine();
  return isFlat ? files.companions : files.companions + "/" + targetText(target);
}

}  // namespace tools
