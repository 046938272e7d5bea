#include "tools/project/components.h"

#include <filesystem>

#include "tools/formats/launch_file_writer.h"
#include "tools/project/reserved_names.h"
#include "tools/system/folder_tree.h"
#include "tools/system/input_error.h"
#include "tools/system/whole_file.h"

namespace fs = std::filesystem;

namespace tools {

// The default updater.
static const char kOwnUpdaterJar[] = "updater.jar";
static const char kOwnUpdaterClass[] = "org.example.updater.GenericUpdater";
static const char kOwnUpdaterProbe[] = "org.example.updater.CompatibilityProbe";

// The paths of the jars in the folder, relative to it and sorted.
static std::vector<std::string> jarPathsIn(const std::string& folder) {
  std::vector<std::string> paths;
  for (const auto& [path, item] : listFolder(folder)) {
    if (!item.isFolder && fs::path(path).extension() == ".jar") {
      paths.push_back(path);
    }
  }
  if (paths.empty()) {
    throw InputError(folder + " contains no jars; put the application's jars into it");
  }
  return paths;
}

std::vector<std::string> jarsOf(const Project& project) {
  if (!project.jar.empty()) {
    return {project.jar};
  }
  std::vector<std::string> jars = jarPathsIn(project.appFolder);
  for (std::string& jar : jars) {
    jar.insert(0, project.appFolder + "/");
  }
  return jars;
}

Components::Components(const Project& project, const std::string& updaterJar) {
  describeApplication(project);
  describeUpdater(project, updaterJar);
  requireNoReservedNamesInApplication(application_);
  requireNoReservedNamesInUpdater(updater_);
}

// A class path is one text with a ':' between its entries.
static void requireNoColon(const Project& project, const std::string& entry) {
  if (entry.find(':') != std::string::npos) {
    throw InputError(project.file + ": [application] cannot have " + entry +
                     " in the class path, where ':' separates entries; rename it");
  }
}

// Every entry must be a packed file or folder, by its path in the folder.
static void requirePacked(const Project& project, const std::vector<std::string>& classPath) {
  const FolderTree tree = listFolder(project.appFolder);
  for (const std::string& entry : classPath) {
    if (tree.count(entry) == 0) {
      throw InputError(project.file + ": [application] class_path has \"" + entry + "\", which " +
                       project.appFolder +
                       " does not contain; write entries as paths relative to it, for example "
                       "lib/tool.jar");
    }
  }
}

static std::vector<std::string> classPathOf(const Project& project) {
  std::vector<std::string> classPath = project.classPath;
  if (!project.jar.empty()) {
    classPath = {fs::path(project.jar).filename()};
  } else if (classPath.empty()) {
    classPath = jarPathsIn(project.appFolder);
  } else {
    requirePacked(project, classPath);
  }
  for (const std::string& entry : classPath) {
    requireNoColon(project, entry);
  }
  return classPath;
}

void Components::describeApplication(const Project& project) {
  application_.folder = project.appFolder;
  if (!project.jar.empty()) {
    application_.files.emplace_back(fs::path(project.jar).filename(), project.jar);
  }
  if (project.mainClass.empty()) {
    return;  // the folder has its launch file
  }
  LaunchFile launch;
  launch.mainClass = project.mainClass;
  launch.appName = project.name;
  launch.classPath = classPathOf(project);
  launch.arguments = project.arguments;
  launch.jvmOptions = project.jvmOptions;
  launch.maximumHeapMegabytes = project.maximumHeapMegabytes;
  writeWhole(work_ / "application", encodeLaunchFile(launch));
  application_.files.emplace_back(LAUNCH_FILE_NAME, work_ / "application");
}

void Components::describeUpdater(const Project& project, const std::string& jar) {
  if (!project.updaterFolder.empty()) {
    updater_.folder = project.updaterFolder;
    updaterVersion_ = project.updaterVersion;
    return;
  }
  if (!fs::is_regular_file(jar)) {
    throw InputError("the packager's own updater is not at " + jar +
                     ": it was built without a JDK; build it with one, or name an updater as "
                     "'folder' and 'version' in [updater]");
  }
  LaunchFile launch;
  launch.mainClass = kOwnUpdaterClass;
  launch.compatibilityClass = kOwnUpdaterProbe;
  launch.appName = project.name;
  launch.classPath = {kOwnUpdaterJar};
  writeWhole(work_ / "updater", encodeLaunchFile(launch));
  writeWhole(work_ / "settings", encodeUpdateSettings(project.updates));
  updater_.files = {{kOwnUpdaterJar, jar},
                    {LAUNCH_FILE_NAME, work_ / "updater"},
                    {UPDATE_SETTINGS_NAME, work_ / "settings"}};
  updaterVersion_ =
      project.updaterVersion.empty() ? std::to_string(OWN_UPDATER_VERSION) : project.updaterVersion;
}

}  // namespace tools
