#ifndef QUORVANE_FORMATS_SITE_NAMES_H
#define QUORVANE_FORMATS_SITE_NAMES_H

#include <string>

// The names of a component's two files on an update site. Any thread.

// Returns the name of the version file of the component `name`.
std::string versionFileName(const std::string& name);

// Returns the name of the archive of the component `name` in `version`.
std::string siteArchiveName(const std::string& name, const std::string& version);

#endif
