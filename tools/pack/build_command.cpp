#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>
#include <optional>
#include <string>

#include "tools/input_error.h"
#include "tools/installer_writer.h"
#include "tools/pack/commands.h"
#include "tools/project_file.h"

namespace fs = std::filesystem;

namespace tools {

namespace {

struct BuildOptions {
  std::string project = "quorvane.toml";
  std::string output;
  std::string executables;  // the folder of launcher, extractor and lzma64
  std::string updateUrl;    // instead of the project's
  bool isQuiet = false;
};

// What one build works with.
struct Build {
  BuildOptions options;
  Project project;
  std::optional<SigningKey> key;

  const SigningKey* signingKey() const { return key ? &*key : nullptr; }
};

}  // namespace

// Stands in an output folder that this command made, and may therefore replace.
static const char kOwnMark[] = ".quorvane-output";

static void say(const Build& build, const std::string& what) {
  if (!build.options.isQuiet) {
    printf("%s\n", what.c_str());
    fflush(stdout);
  }
}

static void prepareOutput(const std::string& folder) {
  std::error_code error;
  const bool isOwn = fs::exists(folder + "/" + kOwnMark);
  if (fs::exists(folder) && !fs::is_empty(folder, error) && !isOwn) {
    throw InputError(folder +
                     " holds files that this command did not make; choose an empty or new folder");
  }
  if (isOwn) {
    fs::remove_all(folder, error);
  }
  fs::create_directories(folder, error);
  if (error || !std::ofstream(folder + "/" + kOwnMark).put('\n')) {
    throw InputError("cannot write to " + folder);
  }
}

static Bundle bundleOf(const Build& build, const std::string& fileName,
                       const std::string& executable) {
  Bundle bundle;
  bundle.path = build.options.output + "/" + fileName + ".app";
  bundle.name = build.project.name;
  bundle.identifier = build.project.identifier;
  bundle.version = build.project.version;
  bundle.executable = build.options.executables + "/" + executable;
  bundle.icon = build.project.icon;
  return bundle;
}

static Tail tailOf(const Build& build) {
  const Project& project = build.project;
  Tail tail;
  tail.appName = project.name;
  tail.minSplashMs = project.minimumSplashMs;
  tail.publicKeyHex = build.key ? build.key->publicKeyHex() : "";
  tail.canOverrideSplash = project.canOverrideSplash;
  tail.installType = project.installType;
  tail.silentParameter = project.silentParameter;
  tail.requiredJavaVersion = project.requiredJava;
  tail.updateUrl = build.options.updateUrl.empty() ? project.updateUrl : build.options.updateUrl;
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

static Installer installerOf(const Build& build, const std::string& fileName) {
  const Project& project = build.project;
  Installer installer;
  installer.bundle = bundleOf(build, fileName, "extractor");
  installer.tail = tailOf(build);
  installer.tail.guVersion = project.updaterVersion;
  installer.properties = propertiesOf(project);
  installer.lzmaTool = build.options.executables + "/lzma64";
  installer.updaterFolder = project.updaterFolder;
  installer.appFolder = project.appFolder;
  installer.splash = project.splash;
  return installer;
}

static void buildLauncher(const Build& build) {
  const Bundle bundle = bundleOf(build, build.project.name, "launcher");
  say(build, "launcher bundle    " + bundle.path);
  writeBundle(bundle);
  writeTailFile(tailPathInBundle(bundle.path), tailOf(build));
}

static void buildOfflineInstaller(const Build& build, const std::string& runtimeArchive) {
  Installer installer = installerOf(build, build.project.name + " Installer");
  say(build, "offline installer  " + installer.bundle.path);
  installer.tail.appVersion = build.project.version;
  installer.tail.jreVersion = build.project.runtimeVersion;
  installer.runtimeArchive = runtimeArchive;
  writeInstaller(installer, build.signingKey());
}

static void buildOnlineInstaller(const Build& build) {
  const Installer installer = installerOf(build, build.project.name + " Online Installer");
  say(build, "online installer   " + installer.bundle.path);
  writeInstaller(installer, build.signingKey());
}

static std::string buildSite(const Build& build) {
  const std::string site = build.options.output + "/site";
  say(build, "update site        " + site);
  return writeUpdateSite(site, build.project.runtimeName, build.project.runtimeVersion,
                         build.project.runtimeHome, build.signingKey());
}

static void runBuild(const BuildOptions& options) {
  Build build{options, readProject(options.project), std::nullopt};
  if (!build.project.key.empty()) {
    build.key = SigningKey::read(build.project.key);
  }
  prepareOutput(options.output);
  buildLauncher(build);
  buildOfflineInstaller(build, buildSite(build));
  buildOnlineInstaller(build);
}

void addBuildCommand(CLI::App* app, const std::string& executables) {
  CLI::App* command = app->add_subcommand(
      "build", "Makes a launcher bundle, an offline and an online installer and an update site.");
  auto options = std::make_shared<BuildOptions>();
  options->executables = executables;
  command->add_option("PROJECT", options->project, "The project file")->capture_default_str();
  command
      ->add_option("-o,--output", options->output,
                   "The folder to write to: new, empty, or made by this command")
      ->required();
  command
      ->add_option("--executables", options->executables,
                   "The folder of launcher, extractor and lzma64 for the target system")
      ->capture_default_str();
  command->add_option("--update-url", options->updateUrl, "Instead of the project's update URL");
  command->add_flag("-q,--quiet", options->isQuiet, "Says nothing when all is well");
  command->footer("Example:\n  quorvane-pack build quorvane.toml --output dist");
  command->callback([options] { runBuild(*options); });
}

}  // namespace tools
