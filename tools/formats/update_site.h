#ifndef QUORVANE_TOOLS_FORMATS_UPDATE_SITE_H
#define QUORVANE_TOOLS_FORMATS_UPDATE_SITE_H

#include <string>

#include "tools/formats/archive_writer.h"
#include "tools/keys/signing.h"

// The update site: a folder of static files, a version text and an archive for each component,
// called as formats/site_names.h says.

namespace tools {

// Returns the version of the component `name` on the site `site`. Throws InputError if there is
// none, or its text is not a whole number, optionally followed by a line end.
std::string readSiteVersion(const std::string& site, const std::string& name);

// A site archive's record of its component and version. An updater belongs to one application.
std::string componentRecord(const std::string& name, const std::string& version);
std::string updaterRecord(const std::string& version, const std::string& application);

// Writes the archive of the component `name` in `version`, and then its version text, into the
// folder `site`, which is created; `record` identifies the archive. A download replaces what an
// installer would have installed, so the archive contains all of it. Returns the archive's path.
// Throws InputError.
std::string writeSiteComponent(const std::string& site, const std::string& name,
                               const std::string& version, const std::string& record,
                               ArchiveContent content, const SigningKey* key);

// Copies an archive that writeSiteComponent() made for the component `name` in `version` into the
// folder `site`, which is created, and then writes its version text. Returns the copy's path.
// Throws InputError.
std::string copySiteComponent(const std::string& site, const std::string& name,
                              const std::string& version, const std::string& archive);

}  // namespace tools

#endif
