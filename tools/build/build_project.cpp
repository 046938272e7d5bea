#include "tools/build/build_project.h"

#include <algorithm>
#include <filesystem>

#include "tools/java/java_runtime.h"
#include "tools/objects/target_fit.h"
#include "tools/project/presentation_check.h"
#include "tools/system/folder_tree.h"
#include "tools/system/input_error.h"

namespace fs = std::filesystem;

namespace tools {

// The runtime that the command line names takes the place of all that the project says.
static void takeRuntime(Project* project, const std::string& folder) {
  project->runtimeModules.clear();
  project->jmods.clear();
  project->jdkArchive.clear();
  project->jdkSha256.clear();
  project->jdk.clear();
  project->targetRuntimes.clear();
  project->runtimeHome = folder;
}

static bool hasExecutables(const std::string& folder) {
  for (const char* name : {"launcher", "extractor", "lzma64"}) {
    if (!fs::is_regular_file(fs::path(folder) / name)) {
      return false;
    }
  }
  return true;
}

// This machine, if it is among the targets, or the only one.
static Target oneOf(const std::vector<Target>& targets, const TargetFit& fit,
                    const std::string& folder) {
  if (std::find(targets.begin(), targets.end(), thisMachine()) != targets.end()) {
    return thisMachine();
  }
  if (targets.size() > 1) {
    throw InputError("the executables in " + folder + " are for " + fit.text() +
                     "; name one target with --target");
  }
  return targets.front();
}

// The target that executables of the command line are for; this machine if there are none. Of
// universal ones the runtime decides. What is missing or does not fit is said later.
static Target targetOfExecutables(const std::string& folder, const std::string& runtime) {
  if (folder.empty() || !hasExecutables(folder)) {
    return thisMachine();
  }
  TargetFit fit;
  for (const char* name : {"launcher", "extractor", "lzma64"}) {
    const std::string path = folder + "/" + name;
    fit.requireProgram({path, readObjectFile(path)});
  }
  const std::vector<Target> programs = fit.targets();
  if (programs.size() == 1 || runtime.empty() || !fs::is_directory(runtime)) {
    return oneOf(programs, fit, folder);
  }
  for (const ObjectFile& file : objectsIn(runtime, runtime)) {
    if (isUsable(file)) {
      fit.require(file);
    }
  }
  return oneOf(fit.targets(), fit, folder);
}

static void takeTargets(Project* project, const BuildOptions& options) {
  if (!options.targets.empty()) {
    project->targets = options.targets;
    project->givenBy["application.targets"] = "--target";
  }
  project->areTargetsNamed = !project->targets.empty();
  if (project->targets.empty()) {
    project->targets = {targetText(targetOfExecutables(options.executables, project->runtimeHome))};
  }
  if (project->targets.size() > 1) {
    for (const auto& [option, value] :
         {std::pair{"--runtime", options.runtime}, {"--executables", options.executables}}) {
      if (!value.empty()) {
        throw InputError(std::string(option) +
                         " is for one target, and this project has several; name one with "
                         "--target");
      }
    }
  }
}

Project projectOf(const BuildOptions& options) {
  Project project = readProject(options.project);
  project.hasSiteForEachTarget = !project.targets.empty() || options.targets.size() > 1;
  const auto take = [&](const char* key, std::string* value, const char* option,
                        const std::string& given) {
    if (!given.empty()) {
      *value = given;
      project.givenBy[key] = option;
    }
  };
  take("application.version", &project.version, "--app-version", options.appVersion);
  take("installer.update_url", &project.updateUrl, "--update-url", options.updateUrl);
  take("signing.key", &project.key, "--key", options.key);
  take("runtime.jdk", &project.jdk, "--jdk", options.jdk);
  if (!options.runtime.empty()) {
    takeRuntime(&project, options.runtime);
    project.givenBy["runtime.folder"] = "--runtime";
  }
  takeTargets(&project, options);
  checkProject(project);
  warnOfPresentation(project);
  if (!options.runtime.empty()) {
    // The project's version applies to its own runtime, or if this one has none.
    const std::string number = runtimeNumber(javaHomeIn(options.runtime));
    project.runtimeVersion = number.empty() ? project.runtimeVersion : number;
  }
  return project;
}

// Puts the runtime of the target in the place of that of [runtime].
static void chooseRuntime(Project* project, const Target& target) {
  const auto own = project->targetRuntimes.find(targetText(target));
  if (own == project->targetRuntimes.end()) {
    if (project->targets.size() > 1 && target != thisMachine()) {
      throw InputError(project->file + ": [runtime." + targetText(target) +
                       "] is missing: [runtime] is for this machine; add that section with "
                       "'jmods' or 'jdk_archive' of a JDK for " +
                       targetText(target) + ", or with 'folder', a runtime for it");
    }
    return;
  }
  const RuntimeSource& source = own->second;
  project->runtimeHome = source.folder;
  project->jmods = source.jmods;
  project->jdkArchive = source.jdkArchive;
  project->jdkSha256 = source.jdkSha256;
  project->runtimeVersion = source.version;
}

// Where the files of the target's update site are, if the address of all sites is `url`.
static std::string addressOf(const std::string& url, const Target& target) {
  if (url.empty() || url == "D" || url == NO_UPDATE_URL) {
    return url;
  }
  return url + (url.back() == '/' ? "" : "/") + targetText(target) + "/";
}

// How to get the executables for a target.
static std::string adviceFor(const Target& target) {
  const std::string text = targetText(target);
  const std::string how = target.system == System::macos
                              ? "run 'scripts/build-macos --arch " +
                                    text.substr(text.find('-') + 1) +
                                    "' and 'cmake --install build' in the packager's sources"
                              : "build and install the packager on such a machine";
  return " is missing: the packager has no executables for " + text + "; " + how +
         ", or name their folder with --executables";
}

static void requireExecutables(const std::string& folder, const Target& target, bool isGiven) {
  for (const char* name : {"launcher", "extractor", "lzma64"}) {
    if (!fs::is_regular_file(fs::path(folder) / name)) {
      throw InputError(folder + "/" + name +
                       (isGiven ? " is missing; name the folder of launcher, extractor and lzma64 "
                                  "for the target system with --executables"
                                : adviceFor(target)));
    }
  }
}

std::vector<TargetBuild> targetsOf(const Project& project, const BuildOptions& options) {
  std::vector<TargetBuild> builds;
  for (const std::string& text : project.targets) {
    const Target target = targetOf(text).value_or(thisMachine());  // checked with the project
    TargetBuild build{target, project.areTargetsNamed, project, options.executables, "site"};
    chooseRuntime(&build.project, target);
    if (project.hasSiteForEachTarget) {
      build.project.updateUrl = addressOf(project.updateUrl, target);
      build.project.updates.url = addressOf(project.updates.url, target);
      build.site += "/" + text;
    }
    if (options.executables.empty()) {
      build.executables = executablesFor(options.files, target);
    }
    requireExecutables(build.executables, target, !options.executables.empty());
    builds.push_back(build);
  }
  return builds;
}

void requireApart(const BuildOptions& options, const Project& project) {
  for (const std::string& folder :
       {project.appFolder, project.updaterFolder, project.runtimeHome, project.jmods}) {
    if (!folder.empty() && isInside(options.output, folder)) {
      throw InputError("the output folder " + options.output + " is inside " + folder +
                       ", which is packed; choose another one with --output");
    }
  }
}

}  // namespace tools
