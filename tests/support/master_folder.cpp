#include "tests/support/master_folder.h"

#include <filesystem>

#include "tests/support/files.h"
#include "tests/support/java_runtime.h"
#include "tools/formats/launch_file_writer.h"

namespace test {

std::string MasterFolder::component(const std::string& name, const std::string& version) const {
  return *this / ("Quorvane-" + name + "-" + version + "-complete");
}

std::string MasterFolder::lastOptions(const std::string& runtimeVersion) const {
  return *this /
         ("QVApps/JRE-LastSuccessfulOptions-Quorvane-Mac64JRE-" + runtimeVersion + "-complete");
}

const MasterFolder& MasterFolder::addFile(const std::string& name, const std::string& bytes,
                                          unsigned mode) const {
  writeFile(*this / name, bytes, mode);
  return *this;
}

const MasterFolder& MasterFolder::addFolders(const std::vector<std::string>& names) const {
  for (const std::string& name : names) {
    std::filesystem::create_directories(*this / name);
  }
  return *this;
}

const MasterFolder& MasterFolder::addWhole(const std::string& name) const {
  if (name.find("-Quorvane-") != std::string::npos) {
    tools::LaunchFile launch;
    launch.mainClass = "updater.Main";
    launch.appName = "Demo";
    addFile(name + "/QuorvaneLaunch", tools::encodeLaunchFile(launch));
  } else if (name.find("JRE-") != std::string::npos) {
    makeRuntimeOfText(*this / name);
  } else {
    addFile(name + "/app.jar", "the application");
  }
  return *this;
}

const MasterFolder& MasterFolder::setRuntimeName(const std::string& name) const {
  return addFile("QVApps/JreNameOverride", field(name));
}

const MasterFolder& MasterFolder::markAsFailed(const std::string& component,
                                               const std::string& version) const {
  return addFile("QVApps/updates/skipped-" + component + "-" + version);
}

}  // namespace test
