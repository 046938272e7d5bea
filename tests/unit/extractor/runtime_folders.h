#ifndef QUORVANE_TESTS_UNIT_EXTRACTOR_RUNTIME_FOLDERS_H
#define QUORVANE_TESTS_UNIT_EXTRACTOR_RUNTIME_FOLDERS_H

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "extractor/run/run.h"
#include "extractor/runtime/publish_runtime.h"
#include "tests/support/capture.h"
#include "tests/support/fake_clock.h"
#include "tests/support/files.h"
#include "tests/support/folder_exchange.h"
#include "tests/support/temp_folder.h"
#include "tests/unit/extractor/disturbed_renames.h"

// A master folder, and the places of one runtime in it.
class RuntimeFolders : public testing::Test {
 protected:
  RuntimeFolders() { setPath(run_.masterFolder, folder_.path().c_str()); }
  ~RuntimeFolders() override {
    test::exchangesFail = false;
    test::unmovable.clear();
  }

  std::string plain() const { return folder_ / "Quorvane-Mac64JRE-1-complete"; }
  std::string bundle() const { return plain() + ".plugin"; }
  std::string waiting() const { return plain() + "/.plugin"; }
  std::string temp() const { return folder_ / "QuorvaneTemp-1-2-app"; }

  // An unpacked runtime, in the temporary folder.
  void unpack() const {
    test::writeFile(temp() + "/Contents/Home/bin/java", "new", 0755);
    test::writeFile(temp() + "/Contents/Home/bin/unpack200", "new", 0755);
    test::writeFile(temp() + "/Contents/Home/lib/modules", "new");
    test::writeFile(temp() + "/Contents/MacOS/JavaAppletPlugin", "old executable", 0755);
  }

  // A Java home without Contents/Home, as one of the system is copied.
  void copyPlainHome() const {
    test::writeFile(temp() + "/bin/java", "new", 0755);
    test::writeFile(temp() + "/bin/unpack200", "new", 0755);
    test::writeFile(temp() + "/.hidden", "x");
  }

  // An installed runtime of the same version, with a file of its user's in each folder.
  void installEarlier() const {
    test::writeFile(plain() + "/bin/java", "old", 0755);
    test::writeFile(plain() + "/settings.ini", "of the runtime");
    test::writeFile(bundle() + "/settings.ini", "of the bundle");
    std::filesystem::create_directories(bundle() + "/Contents/MacOS");
    std::filesystem::create_symlink(plain(), bundle() + "/Contents/Home");
    std::filesystem::create_symlink(plain() + "/lib/libnpjp2.dylib",
                                    bundle() + "/Contents/MacOS/JavaAppletPlugin");
  }

  void publishHere() {
    setPath(run_.jreTemp, temp().c_str());
    setPath(run_.jreFolder, plain().c_str());
    publishRuntime(run_);
  }

  void publish() {
    test::capture([this] { publishHere(); });
  }

  test::Result publishInChild() {
    return test::runInChild([this] { publishHere(); });
  }

  void expectRuntime(const std::string& java) const {
    EXPECT_EQ(java, test::readFile(plain() + "/bin/java"));
    EXPECT_EQ(plain(), std::filesystem::read_symlink(bundle() + "/Contents/Home").string());
  }

  void expectFilesOfTheUser() const {
    EXPECT_EQ("of the runtime", test::readFile(plain() + "/settings.ini"));
    EXPECT_EQ("of the bundle", test::readFile(bundle() + "/settings.ini"));
  }

  std::vector<std::string> namesOfMaster() const { return test::namesIn(folder_.path()); }

  ExtractorRun run_{};
  test::TempFolder folder_;
  test::FakeClock clock_{1457000000000};
};

#endif
