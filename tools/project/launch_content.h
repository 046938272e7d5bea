#ifndef QUORVANE_TOOLS_PROJECT_LAUNCH_CONTENT_H
#define QUORVANE_TOOLS_PROJECT_LAUNCH_CONTENT_H

#include <string>
#include <vector>

#include "tools/formats/archive_writer.h"
#include "tools/formats/launch_file_writer.h"
#include "tools/java/class_path.h"

// Whether what is packed can be launched, and what its manifests ask for.

namespace tools {

// Finds the launch file's main class in what is packed. Throws InputError if its class path does
// not contain it: `where` names the place of the main class in the message.
[[nodiscard]] ClassPathReport requireMainClass(const LaunchFile& launch,
                                               const ArchiveContent& content,
                                               const std::string& where);

// Returns whether the manifest asks for JVM options.
[[nodiscard]] bool asksForOptions(const JarManifest& manifest);

// Returns the JVM options that the manifest asks for and that the Java version `feature` has, 0 for
// an unknown one; without those that `given` already contains.
[[nodiscard]] std::vector<std::string> optionsOf(const JarManifest& manifest, long feature,
                                                 const std::vector<std::string>& given);

// Returns what the manifest of the jar asks for in vain, a line each.
[[nodiscard]] std::vector<std::string> unhonouredTexts(const ClassPathReport& report);

}  // namespace tools

#endif
