#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include "tools/bundle/installer_writer.h"
#include "tools/bundle/output_folder.h"
#include "tools/java/java_runtime.h"
#include "tools/keys/key_file.h"
#include "tools/pack/commands.h"
#include "tools/pack/progress.h"
#include "tools/project/appearance.h"
#include "tools/project/components.h"
#include "tools/project/presentation_check.h"
#include "tools/project/project_file.h"
#include "tools/project/project_fit.h"
#include "tools/system/folder_tree.h"
#include "tools/system/input_error.h"
#include "tools/system/interruption.h"
#include "tools/system/texts.h"

namespace fs = std::filesystem;

namespace tools {

namespace {

struct BuildOptions {
  std::string project = "quorvane.toml";
  std::string output = "dist";
  ProgramFiles files;
  // These override the project's values, unless empty.
  std::string appVersion;
  std::string updateUrl;
  std::string key;
  std::string runtime;
  std::string jdk;
  bool isQuiet = false;
  bool isVerbose = false;

  Verbosity verbosity() const {
    return isQuiet ? Verbosity::quiet : isVerbose ? Verbosity::verbose : Verbosity::normal;
  }
};

// What one build works with.
struct Build {
  const BuildOptions& options;
  const Project& project;
  const Components& components;
  const Appearance& appearance;
  const SigningKey* key;
  OutputFolder& output;
  Progress& progress;
};

// A runtime to pack.
struct Runtime {
  std::string home;
  std::string shown;  // what messages call it
  std::string version;
};

}  // namespace

static Project projectOf(const BuildOptions& options) {
  Project project = readProject(options.project);
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
  take("runtime.folder", &project.runtimeHome, "--runtime", options.runtime);
  if (!options.runtime.empty()) {
    // The project's own keys describe the runtime that it makes or uses.
    project.runtimeModules.clear();
    project.jmods.clear();
    project.jdk.clear();
  }
  checkProject(project);
  warnOfPresentation(project);
  if (!options.runtime.empty()) {
    // The project's version applies to its own runtime, or if this one has none.
    const std::string number = runtimeNumber(javaHomeIn(options.runtime));
    project.runtimeVersion = number.empty() ? project.runtimeVersion : number;
  }
  return project;
}

static std::optional<SigningKey> keyOf(const Project& project) {
  if (project.key.empty()) {
    return std::nullopt;
  }
  warnOfOpenKey(project.key);
  return SigningKey::read(project.key);
}

// The packed folders must not contain the output.
static void requireApart(const BuildOptions& options, const Project& project) {
  for (const std::string& folder :
       {project.appFolder, project.updaterFolder, project.runtimeHome, project.jmods}) {
    if (!folder.empty() && isInside(options.output, folder)) {
      throw InputError("the output folder " + options.output + " is inside " + folder +
                       ", which is packed; choose another one with --output");
    }
  }
}

// Makes the runtime in the folder `work`, or uses the existing one.
static Runtime runtimeOf(const Project& project, const std::string& work, Progress& progress) {
  Runtime runtime;
  if (project.runtimeHome.empty()) {
    const Jdk jdk = Jdk::find(project.jdk);
    progress.step("finding the modules that the runtime needs");
    const std::vector<std::string> modules =
        project.runtimeModules.empty() ? modulesOf(jdk, jarsOf(project)) : project.runtimeModules;
    progress.detail(joined(modules, ", "));
    progress.step("making the runtime with " + jdk.home() + "/bin/jlink, which takes a while");
    linkRuntime(jdk, modules, project.jmods, work);
    runtime.home = work;
    runtime.shown = "the runtime made from " + (project.jmods.empty() ? jdk.home() : project.jmods);
  } else {
    progress.step("checking the runtime");
    progress.step("using the runtime " + project.runtimeHome);
    runtime.home = javaHomeIn(project.runtimeHome);
    runtime.shown = runtime.home;
  }
  runtime.version =
      project.runtimeVersion.empty() ? runtimeNumber(runtime.home) : project.runtimeVersion;
  if (runtime.version.empty()) {
    throw InputError(project.file + ": [runtime] needs the key 'version', because " + runtime.home +
                     "/release has none");
  }
  return runtime;
}

static Tail tailOf(const Project& project, const SigningKey* key) {
  Tail tail;
  tail.appName = project.name;
  tail.minSplashMs = project.minimumSplashMs;
  tail.publicKeyHex = key == nullptr ? "" : key->publicKeyHex();
  tail.canOverrideSplash = project.canOverrideSplash;
  tail.installType = project.installType;
  tail.silentParameter = project.silentParameter;
  tail.requiredJavaVersion = project.requiredJava;
  tail.updateUrl = project.updateUrl;
  return tail;
}

static Properties propertiesOf(const Project& project) {
  Properties properties = project.properties;
  properties.emplace_back("jre_name", project.runtimeName);
  if (project.requireSignature) {
    properties.emplace_back("require_signature", "true");
  }
  return properties;
}

namespace {

// Distinguishes the bundles of one project: the system takes bundles with the same identifier for
// copies of one application.
struct BundleKind {
  const char* nameSuffix;
  const char* identifierSuffix;
  const char* executable;
};
constexpr BundleKind kLauncher = {"", "", "launcher"};
constexpr BundleKind kOffline = {" Installer", ".installer", "extractor"};
constexpr BundleKind kOnline = {" Online Installer", ".online-installer", "extractor"};

}  // namespace

static std::string fileName(const Build& build, const BundleKind& kind) {
  return build.project.name + kind.nameSuffix + ".app";
}

static Bundle bundleOf(const Build& build, const BundleKind& kind) {
  Bundle bundle;
  bundle.path = build.output / fileName(build, kind);
  describeBundle(build.project, build.appearance, kind.nameSuffix, kind.identifierSuffix, &bundle);
  bundle.executable = build.options.files.executables + "/" + kind.executable;
  return bundle;
}

static Installer installerOf(const Build& build, const BundleKind& kind) {
  Installer installer;
  installer.bundle = bundleOf(build, kind);
  installer.tail = tailOf(build.project, build.key);
  installer.tail.guVersion = build.components.updaterVersion();
  installer.properties = propertiesOf(build.project);
  installer.lzmaTool = build.options.files.executables + "/lzma64";
  installer.updater = build.components.updater();
  installer.application = build.components.application();
  installer.bundle.plainHttpHost = plainHttpHostOf(build.project);
  installer.splash = build.appearance.splash;
  return installer;
}

static void buildLauncher(const Build& build) {
  build.progress.step("writing the launcher bundle");
  const Bundle bundle = bundleOf(build, kLauncher);
  writeBundle(bundle);
  writeTailFile(tailPathInBundle(bundle.path), tailOf(build.project, build.key));
}

// Returns the path of the runtime's archive.
static std::string buildSite(const Build& build, const Runtime& runtime) {
  const std::string site = build.output / "site";
  build.progress.step("packing the runtime, which takes the most time");
  const std::string archive =
      writeSiteRuntime(site, build.project.runtimeName, runtime.version, runtime.home, build.key);
  build.progress.step("packing application and updater for the update site");
  const Installer installer = installerOf(build, kOnline);
  writeSiteApplication(site, installer, build.project.version, build.key);
  writeSiteUpdater(site, installer, build.key);
  return archive;
}

static void buildOfflineInstaller(const Build& build, const Runtime& runtime,
                                  const std::string& runtimeArchive) {
  build.progress.step("writing the offline installer");
  Installer installer = installerOf(build, kOffline);
  installer.tail.appVersion = build.project.version;
  installer.tail.jreVersion = runtime.version;
  installer.runtimeArchive = runtimeArchive;
  writeInstaller(installer, build.key);
}

static void buildOnlineInstaller(const Build& build) {
  build.progress.step("writing the online installer");
  writeInstaller(installerOf(build, kOnline), build.key);
}

static void sayResults(const Build& build) {
  const auto say = [&](const char* what, const std::string& name) {
    build.progress.result(what + build.output.finalPath(name));
  };
  say("launcher bundle    ", fileName(build, kLauncher));
  say("offline installer  ", fileName(build, kOffline));
  say("online installer   ", fileName(build, kOnline));
  say("update site        ", "site");
  for (const std::string& remark : build.components.remarks()) {
    build.progress.result(remark);
  }
  if (build.project.updateUrl == NO_UPDATE_URL) {
    const bool isAsked = !build.project.updaterFolder.empty() ||
                         !build.project.updates.url.empty() ||
                         build.project.updates.check == "never";
    build.progress.result(
        std::string("note: [installer] has no update_url, so the online installer cannot download "
                    "a runtime") +
        (isAsked ? "" : ", and installed applications do not look for updates"));
  }
  if (build.key == nullptr) {
    build.progress.result(
        "note: [signing] has no key, and installed applications refuse unsigned updates");
  }
}

static void runBuild(const BuildOptions& options) {
  constexpr int kSteps = 8;
  noteInterruptions();
  Progress progress(options.verbosity(), kSteps);
  progress.step("reading " + options.project);
  const Project project = projectOf(options);
  requireApart(options, project);
  const std::optional<SigningKey> key = keyOf(project);
  const Components components(project, options.files.updaterJar);
  // Errors are found before the runtime is made, which takes time.
  TargetFit fit = fitOfProject(project, options.files.executables);
  encodeTail(tailOf(project, key ? &*key : nullptr));
  encodeParams(propertiesOf(project));
  const Appearance appearance = appearanceOf(project);
  OutputFolder output(options.output);
  const TemporaryFolder work;
  const Runtime runtime = runtimeOf(project, work / "runtime", progress);
  requireRuntime(&fit, runtime.home, runtime.shown);
  progress.detail("everything is for " + fit.text());
  const Build build{options, project, components, appearance, key ? &*key : nullptr,
                    output,  progress};
  const std::string runtimeArchive = buildSite(build, runtime);
  buildLauncher(build);
  buildOfflineInstaller(build, runtime, runtimeArchive);
  buildOnlineInstaller(build);
  output.finish();
  sayResults(build);
  progress.finish();
}

static void addOverrides(const Command& command, BuildOptions* options) {
  command.text("--app-version", &options->appVersion,
               "Overrides the project's [application] version");
  command.text("--update-url", &options->updateUrl,
               "Overrides the project's [installer] update_url");
  command.text("--key", &options->key,
               "Overrides the project's [signing] key; - is standard input");
  command.text("--runtime", &options->runtime, "Pack the runtime in this folder instead");
  command.text("--jdk", &options->jdk, "The JDK that makes the runtime");
}

void addBuildCommand(const Command& app, const ProgramFiles& files) {
  const Command command = app.add(
      "build", "Makes a launcher bundle, an offline and an online installer and an update site.",
      "Options override the project file. Results appear only when all are complete.\n"
      "Example:\n  quorvane-pack build quorvane.toml --output dist --app-version 2");
  auto options = std::make_shared<BuildOptions>();
  options->files = files;
  command.text("PROJECT", &options->project, "The project file").withDefault();
  command
      .text("-o,--output", &options->output,
            "The folder to write to: new, empty, or made by this command")
      .withDefault();
  command
      .text("--executables", &options->files.executables,
            "The folder of launcher, extractor and lzma64 for the target system")
      .withDefault();
  addOverrides(command, options.get());
  const Option quiet = command.flag("-q,--quiet", &options->isQuiet, "Print nothing on success");
  command.flag("-v,--verbose", &options->isVerbose, "Print every step in a line, with details")
      .excludes(quiet);
  command.runs([options] { runBuild(*options); });
}

}  // namespace tools
