#include "tools/project/launch_content.h"

#include <algorithm>

#include "tools/system/folder_tree.h"
#include "tools/system/input_error.h"
#include "tools/system/texts.h"

namespace tools {

ClassPathReport requireMainClass(const LaunchFile& launch, const ArchiveContent& content,
                                 const std::string& where) {
  FolderTree tree = content.folder.empty() ? FolderTree{} : listFolder(content.folder);
  for (const auto& [path, file] : content.files) {
    tree[path] = {false, file};
  }
  const auto isThere = [&](const std::string& path, bool isFolder) {
    const auto found = tree.find(path);
    return found != tree.end() && found->second.isFolder == isFolder;
  };
  const ClassPathSource source = {
      [&](const std::string& path) { return isThere(path, false); },
      [&](const std::string& path) { return isThere(path, true); },
      [&](const std::string& path) { return readJar(tree.at(path).source); }};
  ClassPathReport report = readClassPath(launch.classPath, launch.mainClass, source);
  if (!report.hasMainClass) {
    throw InputError(
        where + " is \"" + launch.mainClass +
        "\", which the class path does not contain: " + joined(launch.classPath, ", "));
  }
  return report;
}

bool asksForOptions(const JarManifest& manifest) {
  return !manifest.addExports.empty() || !manifest.addOpens.empty() ||
         !manifest.enableNativeAccess.empty();
}

std::vector<std::string> optionsOf(const JarManifest& manifest, long feature,
                                   const std::vector<std::string>& given) {
  constexpr long kModules = 9;
  constexpr long kNativeAccess = 17;
  std::vector<std::string> options;
  const auto add = [&](const std::string& option) {
    if (std::count(given.begin(), given.end(), option) == 0) {
      options.push_back(option);
    }
  };
  if (feature >= kModules) {
    for (const std::string& package : manifest.addExports) {
      add("--add-exports=" + package + "=ALL-UNNAMED");
    }
    for (const std::string& package : manifest.addOpens) {
      add("--add-opens=" + package + "=ALL-UNNAMED");
    }
  }
  if (feature >= kNativeAccess && !manifest.enableNativeAccess.empty()) {
    add("--enable-native-access=" + manifest.enableNativeAccess);
  }
  return options;
}

std::vector<std::string> unhonouredTexts(const ClassPathReport& report) {
  const std::string start = "the manifest of " + report.mainJar + " has ";
  std::vector<std::string> texts;
  if (!report.manifest.launcherAgentClass.empty()) {
    texts.push_back(start + "Launcher-Agent-Class, and no agent is started");
  }
  if (!report.manifest.splashScreenImage.empty()) {
    texts.push_back(start +
                    "SplashScreen-Image, which is not shown; 'splash' in [installer] names the "
                    "installer's image");
  }
  return texts;
}

}  // namespace tools
