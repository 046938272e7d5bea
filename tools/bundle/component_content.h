#ifndef QUORVANE_TOOLS_BUNDLE_COMPONENT_CONTENT_H
#define QUORVANE_TOOLS_BUNDLE_COMPONENT_CONTENT_H

#include <string>
#include <utility>
#include <vector>

#include "tools/formats/archive_writer.h"
#include "tools/keys/signing.h"

// What the archives of components hold.

namespace tools {

struct ComponentContent {
  ArchiveContent files;
  std::vector<std::pair<std::string, std::string>> texts;  // more entries: path and bytes
};

// The application `name` in `version` as the archive of an update site holds it: as an installer
// would put it into the version folder.
ComponentContent siteApplication(const ArchiveContent& application, const std::string& name,
                                 const std::string& version);

// The updater of the application `appName` as the archive of an update site holds it. `lzmaTool` is
// the lzma64 program for the target system, `splash` the bytes of a PNG, empty for none.
ComponentContent siteUpdater(const ArchiveContent& updater, const std::string& lzmaTool,
                             const std::string& appName, const std::string& version,
                             const std::string& splash);

// Returns a text that is the same for the same entries with the same bytes, whatever files they
// come from. Nothing of the content may be packed with pack200. Any thread. Throws InputError if
// something cannot be read.
std::string identityOf(const ComponentContent& content);

// Writes the content as the archive `path`, as writeArchive() does. Any thread. Throws InputError,
// also if the content does not have, or no longer has, the identity `identity`.
void writeComponent(const ComponentContent& content, const std::string& identity,
                    const std::string& path, const SigningKey* key);

}  // namespace tools

#endif
