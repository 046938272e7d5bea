#ifndef QUORVANE_TESTS_SUPPORT_LAUNCH_SCENE_H
#define QUORVANE_TESTS_SUPPORT_LAUNCH_SCENE_H

#include <string>
#include <vector>

#include "tests/support/master_folder.h"
#include "tests/support/temp_folder.h"
#include "tools/formats/launch_file_writer.h"

namespace test {

// A master folder with an application folder in it, for launches from its launch file.
class LaunchScene {
 public:
  LaunchScene();

  // The launch file to write: the newest version, no memory settings, an empty class path.
  tools::LaunchFile launchFile;

  std::string appFolderName = "Quorvane-Quorvane-7-complete";

  std::string master() const { return installed_.path(); }
  std::string appFolder() const { return installed_ / appFolderName; }
  std::string runtime() const { return installed_.component("Mac64JRE", "1407"); }
  std::string optionsFile() const { return installed_.lastOptions("1407"); }
  // A place outside the master folder.
  std::string operator/(const std::string& name) const { return folder_ / name; }

  void writeLaunchFile() const;
  void writeOptionsFile(const std::vector<std::string>& options) const;
  // Makes a runtime folder whose Java is the fake one of tests/fakes/fake_java.cpp, and nothing
  // else: no JVM library.
  void installFakeRuntime(const std::string& folder) const;

  // The properties files in the application folder, in the order of their names.
  std::vector<std::string> propertiesFiles() const;

 private:
  TempFolder folder_;
  MasterFolder installed_{folder_ / "Quorvane-Sample"};
};

// The fake program for a runtime's Java.
std::string fakeJava();

// Splits bytes at zero bytes; each text must be ended by one.
std::vector<std::string> endedTexts(const std::string& bytes);

// The texts of a properties file, in which the last one is not ended: key, value, key, value.
std::vector<std::string> propertyTexts(const std::string& bytes);

// The value behind `key` in such texts, or "(none)".
std::string propertyIn(const std::vector<std::string>& texts, const std::string& key);

// Makes something at `path` that exists but cannot be opened: a socket, since permission bits do
// not stop an administrator's account.
void makeUnopenable(const std::string& path);

}  // namespace test

#endif
