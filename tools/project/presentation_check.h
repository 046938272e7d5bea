#ifndef QUORVANE_TOOLS_PROJECT_PRESENTATION_CHECK_H
#define QUORVANE_TOOLS_PROJECT_PRESENTATION_CHECK_H

#include <string>

#include "tools/project/project_file.h"

// Checks of what a project says of its application to users and to the system: names, pictures,
// Info.plist.

namespace tools {

// Returns what is wrong with these keys of [application], beginning with the key, or nothing.
std::string faultOfPresentation(const Project& project);

// Returns what is wrong with [info_plist], or nothing.
std::string faultOfInfoPlist(const Project& project);

// Returns what is wrong with the splash, which is an existing file if there is one, beginning with
// the key, or nothing. An installer with a splash that cannot be read would be invisible.
std::string faultOfSplash(const Project& project);

// Returns what the file `path` lacks to be an icon, or nothing.
std::string faultOfIcon(const std::string& path);

// Returns the server that installers ask without TLS, or nothing.
std::string plainHttpHostOf(const Project& project);

// Writes to standard error what is allowed in the project and probably not meant.
void warnOfPresentation(const Project& project);

// Returns the whole identifier of Apple's category, given with or without "public.app-category.".
std::string wholeCategory(const std::string& category);

}  // namespace tools

#endif
