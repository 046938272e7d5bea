#ifndef QUORVANE_TESTS_SUPPORT_LAUNCHER_BUNDLE_H
#define QUORVANE_TESTS_SUPPORT_LAUNCHER_BUNDLE_H

#include <map>
#include <string>
#include <vector>

#include "tests/support/master_folder.h"
#include "tests/support/process.h"
#include "tests/support/product_system.h"
#include "tests/support/tail.h"
#include "tests/support/temp_folder.h"
#include "tests/support/test_home.h"

namespace test {

// An application bundle with a copy of the built launcher as its executable, beside a fresh home in
// which its runtime may be installed.
class LauncherBundle {
 public:
  LauncherBundle();

  TestHome home;
  const MasterFolder installed{home, "Demo"};

  std::string executable() const { return folder_ / "Demo.app/Contents/MacOS/Demo"; }
  std::string resources() const { return folder_ / "Demo.app/Contents/Resources"; }

  // Appends a record to the executable, or puts it into the Resources folder.
  void appendTail(const Tail& tail) const;
  void writeTailFile(const Tail& tail) const;

  // The master folder of the application "Demo", and a path inside it.
  std::string master() const { return installed.path(); }
  std::string master(const std::string& name) const { return installed / name; }

  // The version folder of the runtime that installRuntime() makes.
  std::string runtime() const { return installed.component("Mac64JRE", "1407"); }

  // Installs the tests' Java runtime, or another one, through a link.
  void installRuntime(const std::string& runtime = testRuntime()) const;

  // Installs a runtime that is nothing but the library `library`, at `place` inside it.
  void installLibrary(const std::string& library, const std::string& place) const;

  // Runs the executable in the bundle's folder. `environment` is added to the home's.
  Result run(const std::vector<std::string>& words,
             const std::map<std::string, std::string>& environment = {}) const;

  // The same without a display.
  Result runWithoutDisplay(const std::vector<std::string>& words) const;

 private:
  Command command(const std::vector<std::string>& words) const;

  TempFolder folder_;
};

// Standard output's messages in their order, without the elapsed time in front of each. Log
// messages have no line end of their own in some cases; a line of a message is an element of its
// own.
std::vector<std::string> messagesOf(const std::string& standardOutput);

}  // namespace test

#endif
