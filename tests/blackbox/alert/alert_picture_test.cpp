// The alerts for what commonly goes wrong, in pictures; they are kept in the build's folder
// "pictures".

#include <gtest/gtest.h>
#include <sys/mount.h>

#include <filesystem>
#include <string>
#include <vector>

#include "tests/blackbox/alert/failing_installer.h"
#include "tests/support/files.h"
#include "tests/support/launcher_bundle.h"
#include "tests/support/own_root.h"
#include "tests/support/unavailable.h"

namespace fs = std::filesystem;
using test::Installer;
using Texts = std::vector<std::string>;

namespace {

class AlertPicture : public InstallerAlert {
 protected:
  // Shows the alert, keeps its picture, closes it, and returns how the process ended.
  test::Result expectAlert(const std::string& name, const std::string& message,
                           const std::string& advice, const std::string& log) {
    const test::ShownAlert alert = waitForAlert();
    EXPECT_EQ(message, alert.message);
    EXPECT_EQ(advice + "\\n\\nThe log file is " + log, alert.advice);
    EXPECT_EQ((Texts{"OK", "Show Log"}), alert.buttons);
    EXPECT_EQ("main", alert.thread);
    expectPicture(alert, name);
    press("OK");
    const test::Result result = finish();
    EXPECT_EQ(1, result.status) << result.out << result.err;
    return result;
  }

  static bool mentions(const test::Result& result, const std::string& text) {
    return result.out.find(text) != std::string::npos;
  }
};

class LauncherPicture : public AlertPicture {
 protected:
  LauncherPicture() {
    bundle_.writeTailFile(test::Tail());
    putRecorderInto(bundle_.executable(), "launcher");
  }

  void startLauncher(const Texts& words) {
    test::Command command{words, bundle_.home.environment()};
    command.arguments.insert(command.arguments.begin(), bundle_.executable());
    startByDesktop(command);
  }

  std::string launcherLog() const {
    const Texts names = test::namesIn(bundle_.master("logs"));
    EXPECT_EQ(1u, names.size());
    return names.empty() ? "" : bundle_.master("logs/" + names[0]);
  }

  test::LauncherBundle bundle_;
};

// A small disk for the accounts folder, mounted for this process and its children alone.
class DiskPicture : public AlertPicture {
 protected:
  void SetUp() override {
    if (!test::mayMount()) {
      return test::unavailable("this account may not mount anything");
    }
    fs::create_directories(disk());
    test::mountSmallDisk(disk(), "4m");
    isMounted_ = true;
  }
  ~DiskPicture() override {
    if (isMounted_) {
      umount2(disk().c_str(), MNT_DETACH);
    }
  }

  std::string disk() const { return installer_.home.applicationSupport(); }

 private:
  bool isMounted_ = false;
};

}  // namespace

TEST_F(LauncherPicture, NoRuntime) {
  fs::create_directories(bundle_.master());
  startLauncher({"guest.Program"});
  waitForAlert();
  const test::Result result =
      expectAlert("no-runtime", "Demo cannot be opened because its Java runtime is missing.",
                  "Install Demo again.", launcherLog());
  EXPECT_TRUE(mentions(result, "No complete JRE folder for Mac64JRE")) << result.out;
}

// It fails on the thread that runs Java, and is shown on the main thread.
TEST_F(LauncherPicture, MainClassMissing) {
  bundle_.installRuntime();
  startLauncher({"-cp", QUORVANE_TEST_CLASSES, "guest.Missing"});
  waitForAlert();
  const test::Result result = expectAlert(
      "main-class-missing", "Demo cannot be opened because its main program is missing.",
      "Install Demo again.", launcherLog());
  EXPECT_TRUE(mentions(result, "[JNILauncher] Searching for clazz failed!\n")) << result.out;
}

TEST_F(AlertPicture, DamagedArchive) {
  writeDamaged();
  startByDesktop(command());
  waitForAlert();
  const test::Result result =
      expectAlert("damaged-archive", "Demo was not installed because the installer is damaged.",
                  "Download it again, and open the new copy.", logPath());
  EXPECT_TRUE(mentions(result, "Unable to read til end of archive file")) << result.out;
}

TEST_F(AlertPicture, SignatureRefused) {
  installer_.sign(test::testKey("first"));
  installer_.tail.publicKey = test::testKey("second").publicKeyHex();
  write();
  startByDesktop(command());
  waitForAlert();
  const test::Result result =
      expectAlert("signature-refused",
                  "Demo was not installed because its maker's signature is missing or wrong.",
                  "Do not use this installer, and download a new one from the maker.", logPath());
  EXPECT_TRUE(mentions(result, "The GenericUpdater archive was rejected")) << result.out;
}

TEST_F(DiskPicture, FullDisk) {
  installer_.application[0] =
      test::nestedRecord("application", Installer::applicationRecords("3") +
                                            test::fileRecord("large", std::string(8 << 20, 'x')));
  write();
  startByDesktop(command());
  waitForAlert();
  const test::Result result =
      expectAlert("full-disk", "There is not enough space on the disk for Demo.",
                  "Free some space on the disk, and open it again.", logPath());
  EXPECT_TRUE(mentions(result, "could not be decompressed\n")) << result.out;
}
