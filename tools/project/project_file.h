#ifndef QUORVANE_TOOLS_PROJECT_PROJECT_FILE_H
#define QUORVANE_TOOLS_PROJECT_PROJECT_FILE_H

#include <map>
#include <string>
#include <vector>

#include "extractor/runtime/version_file.h"
#include "launcher/installation/install_locations.h"
#include "tools/formats/params_writer.h"
#include "tools/project/update_settings.h"

// The declarative file of a project, quorvane.toml: what is packaged and how it installs. Paths in
// it are relative to its folder.

namespace tools {

// What an installer says instead of an update URL when there is none: an address that is never
// asked.
constexpr const char* NO_UPDATE_URL = INVALID_UPDATE_URL;

struct Project {
  std::string file;  // where it was read from, for messages
  // What messages name instead of the file, for keys like "signing.key" that an option gave.
  std::map<std::string, std::string> givenBy;
  // [application]
  std::string name;
  std::string version;
  std::string identifier;
  std::string jar;                     // either the one jar that the application is,
  std::string appFolder;               // or the folder with its files
  std::string mainClass;               // empty when the folder holds a launch file
  std::vector<std::string> classPath;  // relative to the folder; empty for all jars in it
  std::vector<std::string> arguments;
  std::vector<std::string> jvmOptions;
  long maximumHeapMegabytes = 0;  // 0 leaves it to the runtime
  std::string icon;
  // [updater]
  std::string updaterFolder;   // empty for the packager's own
  std::string updaterVersion;  // empty for the packager's own number of its own
  // [updates]
  UpdateSettings updates;
  // [runtime]
  std::string runtimeHome;                  // either a runtime that stands,
  std::vector<std::string> runtimeModules;  // or what jlink makes one of; empty: as jdeps finds
  std::string jdk;                          // empty for the one that is found
  std::string jmods;                        // empty for the JDK's own
  std::string runtimeVersion;               // empty for the number that the runtime states
  std::string runtimeName = DEFAULT_JRE_NAME;
  // [installer]
  std::string installType = "perm_user";
  std::string updateUrl = NO_UPDATE_URL;
  std::string silentParameter = "-silent";
  long minimumSplashMs = 0;
  std::string splash;
  bool canOverrideSplash = false;
  std::string requiredJava;
  bool requireSignature = true;
  Properties properties;
  // [signing]
  std::string key;
};

// Reads the project file `path`. Throws InputError, naming the file, the line and the key, when it
// is no TOML, a key is unknown or of another type.
Project readProject(const std::string& path);

// Throws InputError, naming the file, the key and what to do, when a key that is needed is missing,
// keys exclude each other, a value cannot do its work in the places where it goes, or a file or
// folder that is named is not there or not of its kind.
void checkProject(const Project& project);

// The part of checkProject() that is about names and the identifier, for a project that is only
// begun.
void checkNames(const Project& project);

}  // namespace tools

#endif
