#ifndef QUORVANE_TOOLS_JAVA_JAR_MANIFEST_H
#define QUORVANE_TOOLS_JAVA_JAR_MANIFEST_H

#include <string>
#include <vector>

#include "tools/java/jdk.h"

namespace tools {

// The main section of a jar's manifest; missing texts are empty.
struct JarManifest {
  std::string mainClass;
  std::vector<std::string> classPath;
};

// Reads the manifest of the file `jar` with the JDK's own jar program; a jar without one has an
// empty one. Throws InputError if the file is not a jar.
JarManifest readJarManifest(const Jdk& jdk, const std::string& jar);

// Throws InputError if the file `jar` does not begin and end like a jar.
void requireJar(const std::string& jar);

// Parses the text of a manifest.
JarManifest parseManifest(const std::string& text);

}  // namespace tools

#endif
