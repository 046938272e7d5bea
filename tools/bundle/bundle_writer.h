#ifndef QUORVANE_TOOLS_BUNDLE_BUNDLE_WRITER_H
#define QUORVANE_TOOLS_BUNDLE_BUNDLE_WRITER_H

#include <string>
#include <vector>

#include "tools/bundle/info_plist.h"

// Application bundles: the folder with Contents/MacOS, Contents/Resources and Info.plist.

namespace tools {

// A file in the bundle's Contents/Resources.
struct BundleFile {
  std::string name;
  std::string bytes;
};

struct Bundle : BundleInfo {
  std::string path;                   // ends in ".app"
  std::string executable;             // the file to copy into the bundle
  std::vector<BundleFile> resources;  // among them the icons that the BundleInfo names
};

// Returns the path of the bundle's executable.
std::string executableIn(const Bundle& bundle);

// Writes the bundle's folders, its Info.plist, its executable and its resources. The result does
// not depend on machine or time. Throws InputError if something cannot be read or written, or if
// the path already exists.
void writeBundle(const Bundle& bundle);

}  // namespace tools

#endif
