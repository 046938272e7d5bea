#ifndef QUORVANE_TOOLS_BUNDLE_INSTALLER_WRITER_H
#define QUORVANE_TOOLS_BUNDLE_INSTALLER_WRITER_H

#include <string>

#include "tools/bundle/bundle_writer.h"
#include "tools/formats/params_writer.h"
#include "tools/formats/tail_writer.h"
#include "tools/keys/signing.h"

// Self-contained installers, and runtimes as files of an update site.

namespace tools {

struct Installer {
  Bundle bundle;  // its executable is the extractor
  Tail tail;      // a version that is empty leaves its component out
  Properties properties;
  std::string lzmaTool;  // the lzma64 program for the target system
  // The archives of what the components' version folders will hold, with the suffix ".p2.l2",
  // signed if the Tail has a public key. Those of components that are left out are not read.
  std::string updaterArchive;
  std::string applicationArchive;
  std::string runtimeArchive;  // as writeSiteRuntime() writes it
  std::string splash;          // the bytes of a PNG; empty for none
};

// Writes an installer bundle: the Tail record followed by the archives as Contents/Resources/Tail,
// and the params file beside it. Throws InputError.
void writeInstaller(const Installer& installer);

// Writes the files of the runtime `name` in `version`, made from the Java home `runtimeHome`, into
// the update site `site` (tools/formats/update_site.h). Returns the archive's path; an offline
// installer carries the same archive. Throws InputError.
std::string writeSiteRuntime(const std::string& site, const std::string& name,
                             const std::string& version, const std::string& runtimeHome,
                             const SigningKey* key);

}  // namespace tools

#endif
