#include "tools/project/project_fit.h"

#include <filesystem>

#include "tools/system/input_error.h"

namespace fs = std::filesystem;

namespace tools {

TargetFit fitOfProject(const Project& project, const std::string& executables,
                       std::optional<Target> target) {
  TargetFit fit(target);
  for (const char* name : {"launcher", "extractor", "lzma64"}) {
    const std::string path = executables + "/" + name;
    if (!fs::is_regular_file(path)) {
      throw InputError(path +
                       " is missing; name the folder of launcher, extractor and lzma64 for the "
                       "target system with --executables");
    }
    fit.requireProgram({path, readObjectFile(path)});
  }
  for (const std::string& folder : {project.appFolder, project.updaterFolder}) {
    if (!folder.empty()) {
      fit.requireChoice(objectsIn(folder, folder), folder);
    }
  }
  return fit;
}

void requireRuntime(TargetFit* fit, const std::string& home, const std::string& shown) {
  for (const ObjectFile& file : objectsIn(home, shown)) {
    fit->require(file);
  }
}

}  // namespace tools
