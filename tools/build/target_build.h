#ifndef QUORVANE_TOOLS_BUILD_TARGET_BUILD_H
#define QUORVANE_TOOLS_BUILD_TARGET_BUILD_H

#include <functional>
#include <string>
#include <vector>

#include "tools/apple/target_signing.h"
#include "tools/build/build_options.h"
#include "tools/build/build_project.h"
#include "tools/build/build_runtime.h"
#include "tools/build/downloads.h"
#include "tools/bundle/output_folder.h"
#include "tools/delivery/index_file.h"
#include "tools/keys/signing.h"
#include "tools/objects/target_fit.h"
#include "tools/project/appearance.h"
#include "tools/project/components.h"

namespace tools {

// What the parts of one target are made with; most of it is the same for all targets of a build.
struct BuildSurroundings {
  const BuildOptions& options;
  const SigningKey* key;  // null without signatures
  const Appearance& appearance;
  const Components& components;  // of the target
  SystemVersion minimumSystem;   // the oldest macOS that has what all files of the target need
  OutputFolder& output;
  std::string work;  // a folder for what is not kept
  BuildCache* cache;
  TargetSigning* signing;  // of the target
  std::function<void(const std::string&)> step;
};

// Throws InputError if the installers of the target could not be written, before anything takes
// time.
void requireEncodable(const TargetBuild& build, const SigningKey* key);

// Writes the update site and the downloads of one target into the output folder, and the bundles if
// the options want them. Returns the downloads. Throws InputError.
std::vector<IndexEntry> makeTarget(const TargetBuild& build, const Runtime& runtime,
                                   const BuildSurroundings& surroundings);

}  // namespace tools

#endif
