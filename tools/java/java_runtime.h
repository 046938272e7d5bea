#ifndef QUORVANE_TOOLS_JAVA_JAVA_RUNTIME_H
#define QUORVANE_TOOLS_JAVA_JAVA_RUNTIME_H

#include <string>
#include <vector>

#include "tools/java/jdk.h"

// Java runtimes for an installer to carry: taken from a folder or made with jlink.

namespace tools {

// Returns the Java home in `folder`: the folder itself, or the one in "Contents/Home" of a macOS
// runtime. Throws InputError if neither contains bin/java.
std::string javaHomeIn(const std::string& folder);

// Returns the runtime's version as a whole number, from the version in its file "release": 17.0.15
// becomes 170015, with at least two digits for each number after the first. Empty if the file has
// none.
std::string runtimeNumber(const std::string& home);

// Returns the modules that the jars need, found with jdeps, and jdk.crypto.ec, which https needs
// and no class refers to. Throws InputError.
std::vector<std::string> modulesOf(const Jdk& jdk, const std::vector<std::string>& jars);

// What all runtimes are linked with, besides their modules.
extern const std::vector<std::string> LINK_OPTIONS;

// Makes a runtime from the modules in the new folder `folder`. `jmods` is the folder with the
// modules of another JDK of the same version, for another system; empty for the JDK's own. The same
// modules give the same bytes. Throws InputError.
void linkRuntime(const Jdk& jdk, const std::vector<std::string>& modules, const std::string& jmods,
                 const std::string& folder);

}  // namespace tools

#endif
