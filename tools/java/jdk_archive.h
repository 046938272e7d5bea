#ifndef QUORVANE_TOOLS_JAVA_JDK_ARCHIVE_H
#define QUORVANE_TOOLS_JAVA_JDK_ARCHIVE_H

#include <string>

namespace tools {

// Throws InputError if the file `archive` does not have this SHA-256, 64 lower-case hexadecimal
// digits.
void requireDigest(const std::string& archive, const std::string& sha256);

// Unpacks the modules of a JDK, for whatever system, from its maker's zip or tar.gz into the
// existing empty folder `folder`, and nothing else. Throws InputError as unpackDelivery() does.
void unpackModules(const std::string& archive, const std::string& folder);

// Returns the folder of modules that unpackModules() has made in `folder`. Throws InputError,
// naming the archive, if there is none.
std::string modulesIn(const std::string& folder, const std::string& archive);

}  // namespace tools

#endif
