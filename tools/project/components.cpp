#include "tools/project/components.h"

#include <cstdlib>
#include <filesystem>

#include "tools/formats/launch_file_writer.h"
#include "tools/java/java_runtime.h"
#include "tools/project/appearance.h"
#include "tools/project/launch_content.h"
#include "tools/project/reserved_names.h"
#include "tools/system/folder_tree.h"
#include "tools/system/input_error.h"
#include "tools/system/texts.h"
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

// The first number of the version of the runtime that the project makes or has, or 0.
static long javaVersionOf(const Project& project) {
  const std::string home =
      project.runtimeHome.empty() ? Jdk::find(project.jdk).home() : javaHomeIn(project.runtimeHome);
  return atol(releaseValue(home, "JAVA_VERSION").c_str());
}

void Components::remark(const ClassPathReport& report) {
  for (const std::string& text : absenceTexts(report)) {
    remarks_.push_back("warning: " + text);
  }
  for (const std::string& text : unhonouredTexts(report)) {
    remarks_.push_back("note: " + text);
  }
  if (!report.jarsWithLibraries.empty()) {
    remarks_.push_back("note: native libraries in jars are not checked: " +
                       joined(report.jarsWithLibraries, ", "));
  }
}

// Checks what the launch file in the application's folder describes.
void Components::checkLaunch(const std::string& folder) {
  const std::string path = folder + "/" + LAUNCH_FILE_NAME;
  const LaunchFile launch = aboutFile(path, [&] { return decodeLaunchFile(readWhole(path)); });
  const ClassPathReport report = requireMainClass(launch, application_, path + ": the main class");
  remark(report);
  constexpr long kNewest = 1000;
  for (const std::string& option : optionsOf(report.manifest, kNewest, launch.jvmOptions)) {
    remarks_.push_back("note: the manifest of " + report.mainJar + " asks for " + option +
                       ", and " + path + " does not");
  }
}

// The name in the menu of the process, and of the executable of a Java of its own: the '/' becomes
// a division slash, which looks the same.
static std::string launchNameOf(const Project& project) {
  std::string name;
  for (const char c : shownNameOf(project)) {
    name += c == '/' ? "\u2215" : std::string(1, c);
  }
  return name;
}

void Components::describeApplication(const Project& project) {
  application_.folder = project.appFolder;
  if (!project.jar.empty()) {
    application_.files.emplace_back(fs::path(project.jar).filename(), project.jar);
  }
  if (project.mainClass.empty()) {
    checkLaunch(project.appFolder);
    return;
  }
  LaunchFile launch;
  launch.mainClass = project.mainClass;
  launch.appName = launchNameOf(project);
  launch.classPath = classPathOf(project);
  launch.arguments = project.arguments;
  launch.jvmOptions = project.jvmOptions;
  launch.maximumHeapMegabytes = project.maximumHeapMegabytes;
  const ClassPathReport report =
      requireMainClass(launch, application_, project.file + ": [application] main_class");
  remark(report);
  if (asksForOptions(report.manifest)) {
    const std::vector<std::string> options =
        optionsOf(report.manifest, javaVersionOf(project), launch.jvmOptions);
    launch.jvmOptions.insert(launch.jvmOptions.end(), options.begin(), options.end());
  }
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
  launch.appName = launchNameOf(project);
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
