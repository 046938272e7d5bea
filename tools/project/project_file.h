#ifndef QUORVANE_TOOLS_PROJECT_PROJECT_FILE_H
#define QUORVANE_TOOLS_PROJECT_PROJECT_FILE_H

#include <map>
#include <string>
#include <vector>

#include "formats/names.h"
#include "tools/apple/apple_signing.h"
#include "tools/bundle/info_plist.h"
#include "tools/formats/params_writer.h"
#include "tools/project/update_settings.h"

// A project's declarative file, quorvane.toml: what to package and how it installs. Paths in it are
// relative to its folder.

namespace tools {

// An installer's update URL if there is none: an address that is never requested.
constexpr const char* NO_UPDATE_URL = INVALID_UPDATE_URL;

// Where a runtime comes from, and its number.
struct RuntimeSource {
  std::string folder;      // an existing runtime; or
  std::string jmods;       // the modules of another JDK of the version of the one here; or
  std::string jdkArchive;  // the JDK as its maker publishes it, with its modules, and
  std::string jdkSha256;   // that file's digest
  std::string version;     // empty for the runtime's own number
};

struct Project {
  std::string file;  // its path, for messages
  // What messages name instead of the file, for keys such as "signing.key" that an option gave.
  std::map<std::string, std::string> givenBy;
  // [application]
  std::string name;
  std::string version;
  std::string identifier;
  std::string jar;                     // either the application's only jar,
  std::string appFolder;               // or the folder with its files
  std::string mainClass;               // empty if the folder has a launch file
  std::vector<std::string> classPath;  // relative to the folder; empty for all jars in it
  std::vector<std::string> arguments;
  std::vector<std::string> jvmOptions;
  long maximumHeapMegabytes = 0;  // 0 leaves it to the runtime
  std::string icon;               // an .icns or a PNG file; empty for the default one
  std::string displayName;        // empty for `name`
  std::string displayVersion;     // empty for `version`
  std::string category;           // one of Apple's, maybe without "public.app-category."
  std::string copyright;
  std::vector<std::string> urlSchemes;
  std::vector<DocumentType> documentTypes;  // their icons are paths of .icns or PNG files
  std::vector<std::string> targets;         // empty for the machine that packages
  bool areTargetsNamed = false;             // set by 'build', as is the next one
  bool hasSiteForEachTarget = false;
  bool isForConsole = false;
  // [info_plist]
  PlistTable infoPlist;
  // [updater]
  std::string updaterFolder;   // empty for the packager's own
  std::string updaterVersion;  // empty for the packager's default
  // [updates]
  UpdateSettings updates;
  // [runtime]
  std::string runtimeHome;                  // either an existing runtime,
  std::vector<std::string> runtimeModules;  // or its modules; empty: as jdeps finds
  std::string jdk;                          // empty to search for one
  std::string jmods;                        // empty for the JDK's own
  std::string jdkArchive;                   // or the archive of a JDK that has them,
  std::string jdkSha256;                    // and its digest
  std::string runtimeVersion;               // empty for the runtime's own number
  std::string runtimeName = DEFAULT_JRE_NAME;
  // [runtime.TARGET], which takes the place of those of [runtime] for that target
  std::map<std::string, RuntimeSource> targetRuntimes;
  // [installer]
  std::string installType = "perm_user";
  std::string updateUrl = NO_UPDATE_URL;
  std::string silentParameter = "-silent";
  long minimumSplashMs = 0;
  std::string splash;  // a PNG file; empty for one that is drawn
  bool canOverrideSplash = false;
  std::string requiredJava;
  bool requireSignature = true;
  Properties properties;
  // [signing]
  std::string key;
  AppleSigning apple;  // [signing.apple]
};

// Reads the project `file`. Throws InputError, naming the file, the line and the key, if it is
// not TOML, or a key is unknown or has the wrong type.
Project readProject(const std::string& file);

// Throws InputError, naming the file, the key and what to do, if a required key is missing, keys
// exclude each other, a value is unusable where it is needed, or a named file or folder is missing
// or of the wrong kind.
void checkProject(const Project& project);

// The part of checkProject() for names and the identifier, for an unfinished project.
void checkNames(const Project& project);

}  // namespace tools

#endif
