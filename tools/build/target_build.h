#ifndef QUORVANE_TOOLS_BUILD_TARGET_BUILD_H
#define QUORVANE_TOOLS_BUILD_TARGET_BUILD_H

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "tools/apple/target_signing.h"
#include "tools/build/build_options.h"
#include "tools/build/build_project.h"
#include "tools/build/build_runtime.h"
#include "tools/build/downloads.h"
#include "tools/build/packing.h"
#include "tools/bundle/installer_writer.h"
#include "tools/bundle/output_folder.h"
#include "tools/delivery/index_file.h"
#include "tools/keys/signing.h"
#include "tools/objects/target_fit.h"
#include "tools/project/appearance.h"
#include "tools/project/components.h"
#include "tools/system/temporary_folder.h"
#include "tools/system/workers.h"

namespace tools {

// What the parts of one target are made with; most of it is the same for all targets of a build.
struct BuildSurroundings {
  const BuildOptions& options;
  const SigningKey* key;  // null without signatures
  const Appearance& appearance;
  const OutputFolder& output;
  Packing* packing;
  Workers* workers;
  std::function<void(const std::string&)> step;  // gets what the progress shows
};

// Throws InputError if the installers of the target could not be written, before anything takes
// time.
void requireEncodable(const TargetBuild& build, const SigningKey* key);

// Makes the results of one target in three steps, between which the workers pack. Each throws
// InputError. The object lives longer than the workers.
class TargetMaker {
 public:
  // `components` and `signing` are the target's.
  TargetMaker(const TargetBuild& build, const Components& components, TargetSigning* signing,
              const BuildSurroundings& surroundings);

  // Starts to pack application and updater, if their code needs no signature: that is a step of its
  // own, with the runtime's.
  void startComponents();

  // Signs what needs it, and starts to pack the rest. `minimumSystem` is the oldest macOS that has
  // what all files of the target need.
  void startRuntime(const Runtime& runtime, SystemVersion minimumSystem);

  // Writes the update site and the downloads into the output folder, and the bundles if the options
  // want them. Returns the downloads.
  std::vector<IndexEntry> finish();

 private:
  void packComponents();
  std::string bundlesBase() const;
  std::string bundlePath(const BundleKind& kind) const;
  Bundle bundleOf(const BundleKind& kind) const;
  Installer installerOf(const BundleKind& kind) const;
  void makeSite();
  void makeOfflineInstaller();
  void makeOnlineInstaller();
  void makeLauncher();
  void startDownload(const BundleKind& kind);
  IndexEntry downloadEntry(const BundleKind& kind) const;

  TargetBuild build_;
  const Project& project_;
  const Components& components_;
  TargetSigning* signing_;
  BuildSurroundings around_;
  TemporaryFolder work_;  // for what is not kept
  std::string lzmaTool_;  // signed, like what is packed
  SystemVersion minimumSystem_{};
  std::string runtimeVersion_;
  Workers::Result siteApplication_;  // paths of archives
  Workers::Result siteUpdater_;
  Workers::Result application_;
  Workers::Result updater_;
  Workers::Result runtime_;
  std::string runtimeArchive_;
  std::vector<std::pair<BundleKind, Workers::Result>> downloads_;  // with their digests
};

}  // namespace tools

#endif
