#ifndef QUORVANE_TOOLS_JAVA_JAR_MANIFEST_H
#define QUORVANE_TOOLS_JAVA_JAR_MANIFEST_H

#include <string>
#include <vector>

#include "tools/java/jar_file.h"

namespace tools {

// The main section of a jar's manifest; missing texts are empty.
struct JarManifest {
  std::string mainClass;
  std::vector<std::string> classPath;   // relative to the jar, as URLs
  std::vector<std::string> addExports;  // each a module and a package, with a '/' in between
  std::vector<std::string> addOpens;
  std::string enableNativeAccess;
  std::string launcherAgentClass;
  std::string splashScreenImage;
};

// Returns the manifest of a jar; a jar without one has an empty one. Throws InputError.
[[nodiscard]] JarManifest manifestOf(const JarFile& jar);

// Parses the text of a manifest.
[[nodiscard]] JarManifest parseManifest(const std::string& text);

}  // namespace tools

#endif
