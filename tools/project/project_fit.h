#ifndef QUORVANE_TOOLS_PROJECT_PROJECT_FIT_H
#define QUORVANE_TOOLS_PROJECT_PROJECT_FIT_H

#include <optional>
#include <string>

#include "tools/objects/target_fit.h"
#include "tools/project/project_file.h"

// Whether what a project packs fits the executables that it is packed with.

namespace tools {

// Takes launcher, extractor and lzma64 of the folder `executables`, and the libraries in the
// folders of the project's application and updater; libraries in jars are not looked at. Throws
// InputError if one is missing, or naming two files that do not go together.
[[nodiscard]] TargetFit fitOfProject(const Project& project, const std::string& executables,
                                     std::optional<Target> target = std::nullopt);

// Takes the programs and libraries of the Java home `home`, which messages name `shown`.
void requireRuntime(TargetFit* fit, const std::string& home, const std::string& shown);

}  // namespace tools

#endif
