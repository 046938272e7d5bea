#ifndef QUORVANE_TOOLS_PROJECT_COMPONENTS_H
#define QUORVANE_TOOLS_PROJECT_COMPONENTS_H

#include <string>
#include <vector>

#include "tools/formats/archive_writer.h"
#include "tools/java/class_path.h"
#include "tools/project/project_file.h"
#include "tools/system/temporary_folder.h"

namespace tools {

// The version of the default updater. It is raised with each change of that updater, so that an
// installer, or an update site, replaces an older one.
constexpr long OWN_UPDATER_VERSION = 2;

// The jars of the project's application: the one jar, or all in its folder, sorted.
std::vector<std::string> jarsOf(const Project& project);

// The content of a project's application and updater. What the manifest of the jar with the main
// class asks of a launch becomes JVM options of the launch file that is written for it. Launch
// files that the packager writes for the project are in a temporary folder as long as the object
// lives.
class Components {
 public:
  // `updaterJar` is the default updater. Throws InputError.
  Components(const Project& project, const std::string& updaterJar);

  const ArchiveContent& application() const { return application_; }
  const ArchiveContent& updater() const { return updater_; }
  const std::string& updaterVersion() const { return updaterVersion_; }
  // What its author should know of the content, a line each: "warning: ..." or "note: ...".
  const std::vector<std::string>& remarks() const { return remarks_; }

 private:
  void describeApplication(const Project& project);
  void checkLaunch(const std::string& folder);
  void remark(const ClassPathReport& report);
  void describeUpdater(const Project& project, const std::string& jar);

  TemporaryFolder work_;
  ArchiveContent application_;
  ArchiveContent updater_;
  std::string updaterVersion_;
  std::vector<std::string> remarks_;
};

}  // namespace tools

#endif
