#ifndef QUORVANE_TOOLS_BUNDLE_BUNDLE_WRITER_H
#define QUORVANE_TOOLS_BUNDLE_BUNDLE_WRITER_H

#include <string>

// Application bundles: the folder with Contents/MacOS, Contents/Resources and Info.plist.

namespace tools {

struct Bundle {
  std::string path;        // ends in ".app"
  std::string name;        // of the application, in the menu of the process
  std::string shownName;   // of the bundle, in the Finder: an installer's says so
  std::string identifier;  // reverse-DNS name
  std::string version;
  std::string executable;      // the file to copy into the bundle
  std::string executableName;  // its name there
  std::string icon;            // an .icns file; empty for none
};

// Returns the path of the bundle's executable.
std::string executableIn(const Bundle& bundle);

// Writes the bundle's folders, its Info.plist, its executable and its icon. The result does not
// depend on machine or time. Throws InputError if something cannot be read or written, or if the
// path already exists.
void writeBundle(const Bundle& bundle);

}  // namespace tools

#endif
