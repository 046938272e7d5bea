#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>

#include "tools/java/class_path.h"
#include "tools/java/jdk.h"
#include "tools/keys/key_file.h"
#include "tools/keys/signing.h"
#include "tools/pack/commands.h"
#include "tools/project/components.h"
#include "tools/project/project_text.h"
#include "tools/system/folder_tree.h"
#include "tools/system/input_error.h"
#include "tools/system/whole_file.h"

namespace fs = std::filesystem;

namespace tools {

namespace {
struct InitOptions {
  std::string input;
  std::string project = "quorvane.toml";
  std::string name;
  std::string mainClass;
  std::string key;
  std::string jdk;
  bool mayReplace = false;
};
}  // namespace

static const char kPublicExtension[] = ".pub";

static fs::path folderOf(const std::string& file) {
  return fs::absolute(file).lexically_normal().parent_path();
}

// The path for the project file: relative to its folder if it is below that.
static std::string pathFor(const InitOptions& options, const std::string& path) {
  const fs::path absolute = fs::absolute(path).lexically_normal();
  const fs::path relative = absolute.lexically_relative(folderOf(options.project));
  const bool isBelow = !relative.empty() && *relative.begin() != "..";
  std::string text = isBelow ? relative : absolute;
  while (text.size() > 1 && text.back() == '/') {
    text.pop_back();
  }
  return text;
}

// A project of one jar has no place for what its manifest adds to the class path; what is missing
// anyway is optional.
static void checkClassPath(const std::string& jar, const JarManifest& manifest) {
  for (const std::string& entry : manifest.classPath) {
    if (fs::exists(pathBeside(jar, entry))) {
      throw InputError("the manifest of " + jar + " refers to " + entry +
                       "; name the folder that contains both");
    }
  }
  for (const std::string& entry : manifest.classPath) {
    fprintf(stderr, "quorvane-pack: warning: %s\n", absenceText(jar, entry).c_str());
  }
}

static void describeJar(const InitOptions& options, NewProject* project) {
  const JarManifest manifest = manifestOf(readJar(options.input));
  checkClassPath(options.input, manifest);
  project->jar = pathFor(options, options.input);
  project->mainClass = manifest.mainClass;
}

static void describeFolder(const InitOptions& options, NewProject* project) {
  if (isInside(options.project, options.input)) {
    throw InputError("the project file " + options.project + " and its key would be inside " +
                     options.input +
                     ", which is packed; work in the parent folder, or choose another place with "
                     "--project");
  }
  Project found;
  found.appFolder = options.input;
  std::string mainJar;
  for (const std::string& jar : jarsOf(found)) {
    const std::string mainClass = manifestOf(readJar(jar)).mainClass;
    project->classPath.push_back(jar.substr(options.input.size() + 1));
    if (mainClass.empty() || !options.mainClass.empty()) {
      continue;
    }
    if (!mainJar.empty()) {
      throw InputError(mainJar + " and " + jar +
                       " both name a main class; choose one with --main-class");
    }
    mainJar = jar;
    project->mainClass = mainClass;
  }
  project->folder = pathFor(options, options.input);
}

static NewProject describe(const InitOptions& options) {
  Jdk::find(options.jdk);  // building takes one
  NewProject project;
  if (fs::is_directory(options.input)) {
    describeFolder(options, &project);
  } else {
    describeJar(options, &project);
  }
  if (!options.mainClass.empty()) {
    project.mainClass = options.mainClass;
  }
  if (project.mainClass.empty()) {
    throw InputError(options.input +
                     " has no main class: no manifest has a Main-Class; pass "
                     "--main-class org.example.Main");
  }
  project.name = options.name.empty() ? suggestedName(fs::absolute(options.input)) : options.name;
  if (project.name.empty()) {
    throw InputError("cannot derive an application name from " + options.input + "; pass --name");
  }
  project.identifier = suggestedIdentifier(project.mainClass, project.name);
  project.key = pathFor(options, options.key);
  return project;
}

static void requireKeyName(const std::string& path) {
  if (path == "-" || fs::path(path).extension() == kPublicExtension) {
    failUsage("--key " + path + " is not a name for a private key file; use one like release.key");
  }
}

// `build` must accept the project.
static void requireNames(const InitOptions& options, const NewProject& begun) {
  Project project;
  project.file = options.project;
  project.name = begun.name;
  project.identifier = begun.identifier;
  project.givenBy["application.name"] =
      options.name.empty() ? "the name derived from " + options.input + " (pass --name for another)"
                           : "--name";
  checkNames(project);
}

// Makes the key pair unless the key exists: a key is never replaced.
static void makeKey(const std::string& path) {
  if (fs::exists(fs::symlink_status(path))) {
    printf("%s: existing signing key kept\n", path.c_str());
    return;
  }
  const std::string publicPath = fs::path(path).replace_extension(kPublicExtension);
  if (fs::exists(fs::symlink_status(publicPath))) {
    throw InputError(publicPath + " already exists, but the public half of " + path +
                     " belongs there; move it away, or name another key with --key");
  }
  const SigningKey key = SigningKey::generate(DEFAULT_KEY_BITS);
  writePrivateKey(path, key.privateKeyPem());
  writePublicKey(publicPath, key.publicKeyHex());
  printf("%s: your new signing key; keep it safe and do not publish it\n", path.c_str());
  printf("%s: its public half\n", publicPath.c_str());
}

static void runInit(InitOptions options) {
  while (options.input.size() > 1 && options.input.back() == '/') {
    options.input.pop_back();
  }
  if (options.key.empty()) {
    options.key = (fs::path(options.project).parent_path() / "release.key").string();
  }
  requireKeyName(options.key);
  if (fs::exists(fs::symlink_status(options.project)) && !options.mayReplace) {
    throw InputError(options.project +
                     " exists; name another file with --project, or replace it with --force");
  }
  const NewProject project = describe(options);
  requireNames(options, project);
  const std::string text = projectText(project);
  makeKey(options.key);
  writeWhole(options.project, text);
  printf("%s: the project file of \"%s\"; next: quorvane-pack build\n", options.project.c_str(),
         project.name.c_str());
}

void addInitCommand(const Command& app) {
  const Command command = app.add(
      "init", "Writes a project file for a jar or a folder of jars, and a key to sign with.",
      "Example:\n  quorvane-pack init hello.jar");
  auto options = std::make_shared<InitOptions>();
  command.text("APPLICATION", &options->input, "The jar, or the folder with the jars").required();
  command.text("--project", &options->project, "The project file to write").withDefault();
  command.text("--name", &options->name, "The application's name, by default that of the jar");
  command.text("--main-class", &options->mainClass,
               "The main class, by default the one in the jar's manifest");
  command.text("--key", &options->key,
               "The private key, created if missing; by default release.key beside the "
               "project file");
  command.text("--jdk", &options->jdk, "The JDK to use");
  command.flag("--force", &options->mayReplace, "Replace the project file; never the key");
  command.runs([options] { runInit(*options); });
}

}  // namespace tools
