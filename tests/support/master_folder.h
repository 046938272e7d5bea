#ifndef QUORVANE_TESTS_SUPPORT_MASTER_FOLDER_H
#define QUORVANE_TESTS_SUPPORT_MASTER_FOLDER_H

#include <string>
#include <vector>

#include "tests/support/test_home.h"

namespace test {

// An application's master folder, and what a test lays out in it:
//
//   MasterFolder(home, "Demo").addWhole("Quorvane-Mac64JRE-1407-complete").setRuntimeName("-");
//
// Nothing is made before the first call that adds something. Such a call makes the folders above
// what it adds, fails the test if it cannot, and returns the master folder for the next one.
class MasterFolder {
 public:
  explicit MasterFolder(const std::string& path) : path_(path) {}

  // Where an installation for one user puts that of the application.
  MasterFolder(const TestHome& home, const std::string& application)
      : path_(home.applicationSupport() + "/Quorvane-" + application) {}

  const std::string& path() const { return path_; }

  // A path inside it.
  std::string operator/(const std::string& name) const { return path_ + "/" + name; }

  // The complete version folder of a component: "Mac64JRE", "Quorvane" for the updater, or the
  // application's name.
  std::string component(const std::string& name, const std::string& version) const;

  // The file with the options that last launched on the runtime Mac64JRE of this version.
  std::string lastOptions(const std::string& runtimeVersion) const;

  // Writes a file, over an earlier one.
  const MasterFolder& addFile(const std::string& name, const std::string& bytes = "",
                              unsigned mode = 0644) const;

  // Makes folders without content.
  const MasterFolder& addFolders(const std::vector<std::string>& names) const;

  // Makes the version folder of this name with what the product looks for in it before a start: the
  // launch file of the component "Quorvane"; files of text for a runtime, whose component ends in
  // "JRE"; the file "app.jar" for an application. Nothing of it can be run.
  const MasterFolder& addWhole(const std::string& name) const;

  // Writes the file that gives the application's runtime another name than Mac64JRE.
  const MasterFolder& setRuntimeName(const std::string& name) const;

  // Leaves the mark of a version with which the application failed to start twice.
  const MasterFolder& markAsFailed(const std::string& component, const std::string& version) const;

 private:
  std::string path_;
};

}  // namespace test

#endif
