#ifndef QUORVANE_TOOLS_JAVA_JAR_MANIFEST_H
#define QUORVANE_TOOLS_JAVA_JAR_MANIFEST_H

#include <string>
#include <vector>

#include "tools/java/jdk.h"

namespace tools {

// What the main section of a jar's manifest says; a text is empty where it says nothing.
struct JarManifest {
  std::string mainClass;
  std::vector<std::string> classPath;
};

// Reads the manifest of the file `jar` with the JDK's own jar program; a jar without one has an
// empty one. Throws InputError when the file is no jar.
JarManifest readJarManifest(const Jdk& jdk, const std::string& jar);

// Throws InputError when the file `jar` has not the beginning and the end of a jar.
void requireJar(const std::string& jar);

// Returns what the text of a manifest says.
JarManifest parseManifest(const std::string& text);

}  // namespace tools

#endif
