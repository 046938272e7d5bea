#ifndef QUORVANE_TOOLS_PROJECT_APPEARANCE_H
#define QUORVANE_TOOLS_PROJECT_APPEARANCE_H

#include <string>
#include <vector>

#include "tools/bundle/bundle_writer.h"
#include "tools/project/project_file.h"

// The pictures of a project's bundles, and what their Info.plist files say.

namespace tools {

struct Appearance {
  std::string icon;                        // the bytes of an .icns file
  std::vector<std::string> documentIcons;  // the same for each document type; empty for none
  std::string splash;                      // the bytes of a PNG
};

// Reads, converts and draws the pictures of a checked project, which takes about a second if icon
// or splash must be made. Throws InputError.
Appearance appearanceOf(const Project& project);

// Fills in everything about a bundle of the project except its path and its executable. The suffix
// tells the bundles of one project apart: the system takes bundles with the same identifier for
// copies of one application.
void describeBundle(const Project& project, const Appearance& appearance,
                    const std::string& identifierSuffix, Bundle* bundle);

// Returns the name that users see.
const std::string& shownNameOf(const Project& project);

}  // namespace tools

#endif
