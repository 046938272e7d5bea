#ifndef QUORVANE_TOOLS_PROJECT_FILE_H
#define QUORVANE_TOOLS_PROJECT_FILE_H

#include <string>

#include "tools/params_writer.h"

// The declarative file of a project, quorvane.toml: what is packaged and how it installs. Paths in
// it are relative to its folder.

namespace tools {

struct Project {
  // [application]
  std::string name;
  std::string version;
  std::string identifier;
  std::string appFolder;
  std::string icon;
  // [updater]
  std::string updaterFolder;
  std::string updaterVersion;
  // [runtime]
  std::string runtimeHome;
  std::string runtimeVersion;
  std::string runtimeName = "Mac64JRE";
  // [installer]
  std::string installType = "perm_user";
  std::string updateUrl = "http://192.0.2.10/";  // the placeholder: no update site
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

// Reads the project file `path`. Throws InputError, naming the file and the key, when it is no
// TOML, a key is unknown or of another type, or a required one is missing.
Project readProject(const std::string& path);

}  // namespace tools

#endif
