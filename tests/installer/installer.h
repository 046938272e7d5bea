#ifndef QUORVANE_TESTS_INSTALLER_INSTALLER_H
#define QUORVANE_TESTS_INSTALLER_INSTALLER_H

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "tests/installer/records.h"
#include "tests/support/master_folder.h"
#include "tests/support/process.h"
#include "tests/support/tail.h"
#include "tests/support/temp_folder.h"
#include "tests/support/test_home.h"

namespace test {

// Where the installer's bundle has its Tail record and its params file.
enum class TailPlace { Resource, Executable, None };
enum class ParamsPlace { ExcludedFromSigning, LocVersion, Both, None };

// A self-contained installer of the application "Demo" in a bundle, beside a fresh home to install
// into. Its runtime is a small fake one: a java that records its arguments and a JVM library that
// records how it was called. A test sets the members, then calls write() and run().
class Installer {
 public:
  Installer();

  // An offline installer of application 3 with updater 5 and runtime 1407.
  Tail tail;
  std::vector<std::pair<std::string, std::string>> properties;
  std::string paramsCount;  // instead of the number of properties, unless it is empty
  // The archives after the Tail's fields: the updater's four, the runtime's, the application's
  // two.
  std::vector<std::string> updater;
  std::string runtime;
  std::vector<std::string> application;
  TailPlace tailPlace = TailPlace::Resource;
  ParamsPlace paramsPlace = ParamsPlace::ExcludedFromSigning;
  TestHome home;
  const MasterFolder installed{home, "Demo"};

  // The launch files of the updater and of the application.
  static std::string updaterLaunchFile();
  static std::string applicationLaunchFile();

  // The records of the components, to be changed and nested again.
  static std::string updaterRecords();
  static std::string runtimeRecords();
  static std::string runtimeRelease();  // the bytes of its file "release"
  static std::string applicationRecords(const std::string& version);

  // Makes an installer without an application and a runtime.
  void makeOnline(const std::string& updateUrl);

  // Signs the three components with `key` and puts its public half into the Tail.
  void sign(const tools::SigningKey& key);

  // Writes the bundle, over an earlier one.
  void write() const;

  // The Tail record followed by the archives.
  std::string tailRecord() const;

  std::string executable() const { return folder_ / "Setup.app/Contents/MacOS/Setup"; }
  std::string resources() const { return folder_ / "Setup.app/Contents/Resources"; }
  std::string params() const { return resources() + "/AppParams.excludefromsigning"; }

  // The master folder, and a path inside it.
  std::string master() const { return installed.path(); }
  std::string master(const std::string& name) const { return installed / name; }
  std::string runtimeFolder() const { return installed.component("Mac64JRE", "1407"); }

  // Installs version folders as an earlier run would have.
  void installUpdater(const std::string& version) const;
  void installRuntime(const std::string& version = "1407") const;
  void installApplication(const std::string& version) const;

  // Installs the versions that a new installer carries.
  void installCarried() const;

  // What runs the bundle's executable without a display, to be changed and run.
  Command command(const std::vector<std::string>& words = {}) const;

  // Runs the bundle's executable without a display, unless `display` is set.
  Result run(const std::vector<std::string>& words = {},
             const std::map<std::string, std::string>& environment = {},
             bool display = false) const;

  // Makes every later run one of an account that has no right of the superuser's, and gives it all
  // that this installer has.
  void becomeOrdinary();

  // Returns whether that account can reach the checkout at all.
  static bool isReachableForOrdinary();

  // The files in which the fake java and the fake JVM library record what they got.
  std::string javaReport() const { return folder_ / "java-report"; }
  std::string jvmReport() const { return folder_ / "jvm-report"; }

  // Whether the JVM library was asked to run the updater's main class.
  bool launched() const;

  // The names of the version folders, and of everything that is left over of a temporary folder.
  std::vector<std::string> versionFolders() const;
  std::vector<std::string> tempFolders() const;

  // A path outside the bundle and the home.
  std::string operator/(const std::string& name) const { return folder_ / name; }

 private:
  TempFolder folder_;
  bool isOrdinary_ = false;
};

}  // namespace test

#endif
