#ifndef QUORVANE_TOOLS_BUNDLE_INFO_PLIST_H
#define QUORVANE_TOOLS_BUNDLE_INFO_PLIST_H

#include <string>
#include <vector>

#include "tools/bundle/plist.h"

// What a bundle's Info.plist says of it.

namespace tools {

// The oldest system that the product's executables for macOS run on, which is the one that those
// for Intel processors are built for (cmake/MacosToolchain.cmake).
constexpr const char* DEFAULT_MINIMUM_SYSTEM = "10.13";

// Files that the application opens.
struct DocumentType {
  std::string name;                       // for the user, such as "Letter"
  std::string role;                       // "Editor", "Viewer", "Shell", "QLGenerator" or "None"
  std::vector<std::string> extensions;    // without the dot
  std::vector<std::string> contentTypes;  // uniform type identifiers
  std::string icon;                       // a file in Contents/Resources; empty for none
};

struct BundleInfo {
  std::string name;            // of the application, in its menu
  std::string identifier;      // reverse-DNS name of the bundle
  std::string appIdentifier;   // of the application, the same in all its bundles
  std::string version;         // a whole number
  std::string displayVersion;  // for the user; empty for `version`
  std::string executableName;  // in Contents/MacOS
  std::string icon;            // a file in Contents/Resources; empty for none
  std::string minimumSystem = DEFAULT_MINIMUM_SYSTEM;
  std::string category;   // the whole identifier of one of Apple's categories; empty for none
  std::string copyright;  // empty for none
  std::vector<std::string> urlSchemes;
  std::vector<DocumentType> documentTypes;
  std::string plainHttpHost;  // a server that may be asked without TLS; empty for none
  PlistTable more;            // replaces and adds entries
};

// Returns the text of the bundle's Info.plist. Entries are sorted by key. Throws InputError if a
// text cannot stand in a property list.
std::string encodeInfoPlist(const BundleInfo& info);

// Whether the project file may not set this entry, because the bundle depends on it.
bool isFixedEntry(const std::string& key);

}  // namespace tools

#endif
