#ifndef QUORVANE_TOOLS_BUILD_DOWNLOADS_H
#define QUORVANE_TOOLS_BUILD_DOWNLOADS_H

#include <string>

#include "tools/delivery/delivery_writer.h"
#include "tools/objects/target.h"
#include "tools/project/project_file.h"

// The names of a build's downloads.

namespace tools {

// The three bundles of a project: the system takes bundles with the same identifier for copies of
// one application, and their downloads lie in one folder.
struct BundleKind {
  const char* name;
  const char* identifierSuffix;
  const char* executable;
  const char* downloadSuffix;
};
constexpr BundleKind LAUNCHER_BUNDLE = {"launcher", "", "launcher", "-launcher"};
constexpr BundleKind OFFLINE_INSTALLER = {"offline", ".installer", "extractor", ""};
constexpr BundleKind ONLINE_INSTALLER = {"online", ".online-installer", "extractor", "-online"};

// Returns the version in the names of downloads: that for users, with '_' for what a file name
// cannot hold on every system, such as '/'.
std::string shownVersion(const Project& project);

// The system's own tools unpack this one and keep modes and links.
DeliveryFormat deliveryFormatOf(const Target& target);

// Returns the file name of the project's download of that kind for the target, for example
// "Hello-3-macos-arm64.zip".
std::string downloadName(const Project& project, const Target& target, const BundleKind& kind);

// Returns whether a file of that name is the offline installer for the target. A project's name
// contains no '-'.
bool isOfflineDownload(const std::string& name, const Target& target);

}  // namespace tools

#endif
