// Installers on machines that are full, read-only, restricted or wrong about the time. Whatever the
// condition: the status and the line that are documented, nothing lost, no folder that counts as
// complete and does not start, and a working installation once the condition is over.

#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "tests/blackbox/installer/current_installation.h"
#include "tests/blackbox/installer/starts.h"
#include "tests/support/account.h"
#include "tests/support/own_root.h"
#include "tests/support/product_system.h"
#include "tests/support/unavailable.h"

namespace fs = std::filesystem;
using test::Installer;

namespace {

const char kElevation[] =
    "[Extractor] Unable to create GU Temp folder - assuming elevation required";

// Application 3 is installed; the installer carries application 4 and a newer updater.
class Conditions : public testing::Test {
 protected:
  void installOldVersion() {
    installer_.write();
    EXPECT_EQ(0, installer_.run().status);
    fs::remove(installer_.jvmReport());
    carryUpdate(&installer_);
  }

  // Nothing of the old version is lost, and nothing that counts as complete is broken.
  void expectNothingLost() {
    EXPECT_TRUE(fs::exists(installer_.master("Quorvane-Demo-3-complete/demo.jar")));
    EXPECT_TRUE(fs::exists(installer_.master("Quorvane-Quorvane-5-complete/updater.jar")));
    expectVersionFoldersStart(installer_);
  }

  void expectNextRunUpdates() {
    fs::remove(installer_.jvmReport());
    const test::Result next = installer_.run();
    EXPECT_EQ(0, next.status) << next.out;
    EXPECT_TRUE(installer_.launched()) << next.out;
    EXPECT_TRUE(fs::exists(installer_.master("Quorvane-Demo-4-complete/demo.jar")));
    expectVersionFoldersStart(installer_);
  }

  // Everything of the installer becomes an ordinary user's; where that one cannot reach the build
  // folder there is nothing to test.
  bool becomeOrdinary() {
    if (!Installer::isReachableForOrdinary()) {
      return false;
    }
    installer_.becomeOrdinary();
    return true;
  }

  // Runs the installer with a change to its process before it starts, as the account that it has.
  test::Result runWith(const std::function<void()>& change) {
    test::Command command = installer_.command();
    const auto become = command.prepare;
    command.prepare = [change, become] {
      if (become) {
        become();
      }
      change();
    };
    return test::run(command);
  }

  Installer installer_;
};

// A disk of its own for the accounts folder, mounted for this process alone.
class DiskFull : public Conditions {
 protected:
  void SetUp() override {
    if (!test::mayMount()) {
      return test::unavailable("this account may not mount anything");
    }
    fs::create_directories(installer_.home.applicationSupport());
    test::mountSmallDisk(installer_.home.applicationSupport(), "64m");
    isMounted_ = true;
    installOldVersion();
    installer_.write();
  }

  ~DiskFull() override {
    if (isMounted_) {
      umount2(installer_.home.applicationSupport().c_str(), MNT_DETACH);
    }
  }

  // Fills the disk up to `bytes` that are left.
  void leaveFree(size_t bytes) {
    const fs::path filler = installer_.home.applicationSupport() + "/filler";
    fs::remove(filler);
    const auto space = fs::space(installer_.home.applicationSupport());
    test::writeFile(filler, std::string(space.available - bytes, 'f'));
  }

  // Room enough, an end with status 1, or no room for the launch properties alone, which has a
  // status and a line of its own. Returns whether there was room enough.
  static bool expectStatusOfAFullDisk(const test::Result& result) {
    EXPECT_FALSE(result.timedOut);
    EXPECT_EQ(0, result.signal);
    EXPECT_TRUE(result.status == 0 || result.status == 1 || result.status == 99)
        << result.status << result.out;
    EXPECT_EQ(result.status == 99,
              mentions(result, "Unable to write Launch Properties file! Cannot run!\n"))
        << result.status << result.out;
    return result.status == 0;
  }

  void empty() { fs::remove(installer_.home.applicationSupport() + "/filler"); }

 private:
  bool isMounted_ = false;
};

}  // namespace

TEST_F(DiskFull, AnywhereInAnUpdateEndsWithStatus0Or1Or99AndLosesNothing) {
  const std::string folder = installer_.home.applicationSupport();
  fs::copy(installer_.master(), installer_ / "before",
           fs::copy_options::recursive | fs::copy_options::copy_symlinks);
  int failed = 0;
  // The update needs about 2 MB, or less, most of it for the LZMA tool.
  const bool isThorough = getenv("QUORVANE_CONDITIONS") != nullptr;
  const size_t kShare = fs::file_size(test::product("lzma64")) / 8 * 3;
  const size_t kStep = isThorough ? 64 * 1024 : kShare;
  const size_t kMost = isThorough ? 3 * 1024 * 1024 : 7 * kShare;
  for (size_t left = 0; left < kMost; left += kStep) {
    SCOPED_TRACE(std::to_string(left) + " bytes left");
    fs::remove_all(installer_.master());
    fs::copy(installer_ / "before", installer_.master(),
             fs::copy_options::recursive | fs::copy_options::copy_symlinks);
    leaveFree(left);
    const test::Result result = installer_.run();
    failed += expectStatusOfAFullDisk(result) ? 0 : 1;
    expectNothingLost();
    empty();
    expectNextRunUpdates();
    if (HasFailure()) {
      FAIL() << result.out;
    }
  }
  EXPECT_GE(failed, 3);
  printf("%d sizes were too small\n", failed);
}

TEST_F(Conditions, FileSizeLimitEndsWithStatus1AndLosesNothing) {
  installOldVersion();
  installer_.write();
  const test::Result result = runWith([] {
    signal(SIGXFSZ, SIG_IGN);
    const rlimit limit{256 * 1024, 256 * 1024};  // less than the LZMA tool needs
    setrlimit(RLIMIT_FSIZE, &limit);
  });
  EXPECT_EQ(1, result.status);
  EXPECT_TRUE(mentions(result, "Unable to write to target file\n")) << result.out;
  expectNothingLost();
  expectNextRunUpdates();
}

TEST_F(Conditions, FileSizeLimitThatCutsTheUsersSplashImageLeavesNoPartOfIt) {
  installer_.tail.canOverrideSplash = "1";
  installer_.updater[0] =
      test::fileRecord("lzma64", "#!/bin/sh\nexec '" + test::product("lzma64") + "' \"$@\"\n");
  installer_.updater[2] = test::fileRecord("other.txt", "");
  installer_.properties = {{"splash_image", std::string(120000, 'A')}};
  installer_.write();
  const test::Result result = runWith([] {
    signal(SIGXFSZ, SIG_IGN);
    const rlimit limit{64 * 1024, 64 * 1024};
    setrlimit(RLIMIT_FSIZE, &limit);
  });
  EXPECT_TRUE(mentions(result, "[Extractor] Overwriting splash image at ")) << result.out;
  EXPECT_TRUE(fs::exists(installer_.master("Quorvane-Quorvane-5-complete/other.txt")));
  EXPECT_FALSE(fs::exists(installer_.master("Quorvane-Quorvane-5-complete/nativesplash.png")));
}

TEST_F(Conditions, ReadOnlyMasterFolderOfAnOrdinaryUserAssumesThatElevationIsNeeded) {
  installOldVersion();
  installer_.write();
  if (!becomeOrdinary()) {
    return test::unreachable();
  }
  fs::permissions(installer_.master(), static_cast<fs::perms>(0555));
  const test::Result result = installer_.run();
  EXPECT_EQ(1, result.status);
  EXPECT_TRUE(logs(result, kElevation)) << result.out;
  expectNothingLost();
  EXPECT_TRUE(installer_.tempFolders().empty());
  fs::permissions(installer_.master(), static_cast<fs::perms>(0777));
  expectNextRunUpdates();
}

TEST_F(Conditions, MasterFolderOfAnotherUserThatIsReadOnlyAssumesThatElevationIsNeeded) {
  if (geteuid() != 0) {
    return test::unavailable("only the superuser can make another user's folder");
  }
  installOldVersion();
  installer_.write();
  if (!becomeOrdinary()) {
    return test::unreachable();
  }
  test::giveTo({0, 0}, installer_.master());
  fs::permissions(installer_.master(), static_cast<fs::perms>(0755));
  const test::Result result = installer_.run();
  EXPECT_EQ(1, result.status);
  EXPECT_TRUE(logs(result, kElevation)) << result.out;
  expectNothingLost();
}

TEST_F(Conditions, ReadOnlyMasterFolderWithEverythingCurrentStillLaunches) {
  installer_.write();
  EXPECT_EQ(0, installer_.run().status);
  fs::remove(installer_.jvmReport());
  if (!becomeOrdinary()) {
    return test::unreachable();
  }
  fs::permissions(installer_.master(), static_cast<fs::perms>(0555));
  const test::Result result = installer_.run();
  EXPECT_EQ(0, result.status);
  EXPECT_TRUE(installer_.launched());
}

TEST_F(Conditions, UnreadableMasterFolderAssumesThatElevationIsNeeded) {
  installOldVersion();
  installer_.write();
  if (!becomeOrdinary()) {
    return test::unreachable();
  }
  test::giveTo({geteuid(), getegid()}, installer_.home.applicationSupport());
  fs::permissions(installer_.master(), static_cast<fs::perms>(geteuid() == 0 ? 0700 : 0000));
  const test::Result result = installer_.run();
  EXPECT_EQ(1, result.status);
  EXPECT_TRUE(logs(result, kElevation)) << result.out;
  fs::permissions(installer_.master(), static_cast<fs::perms>(0777));
  expectNothingLost();
}

TEST_F(Conditions, ReadOnlyUpdaterFolderEndsWithStatus99AfterItsRetries) {
  installer_.write();
  EXPECT_EQ(0, installer_.run().status);
  fs::remove(installer_.jvmReport());
  if (!becomeOrdinary()) {
    return test::unreachable();
  }
  const std::string updater = installer_.master("Quorvane-Quorvane-5-complete");
  fs::permissions(updater, static_cast<fs::perms>(0555));
  // The five pauses of 500 seconds are skipped by the library that also bends the clock.
  const test::Result result = installer_.run({}, withClock(installer_, "1500000000:1"));
  EXPECT_EQ(99, result.status) << result.out;
  EXPECT_TRUE(logs(result, "Unable to write Launch Properties file! Cannot run!"));
  EXPECT_FALSE(installer_.launched());
  fs::permissions(updater, static_cast<fs::perms>(0777));
  EXPECT_EQ(0, installer_.run().status);
  EXPECT_TRUE(installer_.launched());
}

TEST_F(Conditions, VanishedHomeAssumesThatElevationIsNeeded) {
  installer_.write();
  fs::remove_all(installer_.home.path());
  const test::Result result = installer_.run();
  EXPECT_EQ(1, result.status);
  EXPECT_TRUE(logs(result, kElevation)) << result.out;
}

TEST_F(Conditions, AccountWithoutAnEntryInThePasswordDatabaseEndsWithStatus1) {
  installer_.write();
  test::writeFile(installer_ / "passwd", "other:x:4242:4242:Other:/nowhere:/bin/sh\n");
  const test::Result result = installer_.run({}, {{"NSS_WRAPPER_PASSWD", installer_ / "passwd"}});
  // The toolkit may be the first to miss the user's name, before there is a log.
  EXPECT_EQ(1, result.status);
  EXPECT_TRUE(mentions(result, "ERROR: Unable to get shared dir!") ||
              result.err.find("Unable to determine current user name") != std::string::npos)
      << result.out << result.err;
  EXPECT_FALSE(fs::exists(installer_.master()));
}

TEST_F(Conditions, HomeThatVanishesDuringTheInstallationEndsWithStatus1) {
  installer_.runtime = test::nestedRecord(
      "runtime", Installer::runtimeRecords() +
                     test::fileRecord("Contents/Home/bin/java",
                                      "#!/bin/sh\nrm -rf '" + installer_.home.path() + "'\n"));
  installer_.write();
  const test::Result result = installer_.run();
  EXPECT_EQ(1, result.status) << result.out;
  EXPECT_FALSE(installer_.launched());
  EXPECT_TRUE(logs(result, "[Extractor] The folder of the JRE is gone, nothing of it is installed"))
      << result.out;
}

TEST_F(Conditions, FullProcessTableInstallsNothingAndLosesNothing) {
  installOldVersion();
  installer_.write();
  if (!becomeOrdinary()) {
    return test::unreachable();
  }
  const test::Result result = runWith([] {
    const rlimit limit{0, 0};
    setrlimit(RLIMIT_NPROC, &limit);
  });
  EXPECT_EQ(1, result.status) << result.out;
  EXPECT_TRUE(
      mentions(result, "Launch Error " + std::to_string(test::productErrno(EAGAIN)) + ".\n"))
      << result.out;
  expectNothingLost();
  EXPECT_FALSE(fs::exists(installer_.master("Quorvane-Demo-4-complete")));
  expectNextRunUpdates();
}

// Java needs a thread, and a thread needs a place in the table.
TEST_F(Conditions, FullProcessTableLaunchesNothingOfWhatIsCurrentAndNamesBothFailures) {
  installer_.write();
  EXPECT_EQ(0, installer_.run().status);
  fs::remove(installer_.jvmReport());
  if (!becomeOrdinary()) {
    return test::unreachable();
  }
  const test::Result result = runWith([] {
    const rlimit limit{0, 0};
    setrlimit(RLIMIT_NPROC, &limit);
  });
  EXPECT_EQ(0, result.status) << result.out;
  EXPECT_TRUE(mentions(result, "[JNILaunch] [ERROR] Unable to start Java's thread!\n"))
      << result.out;
  EXPECT_TRUE(
      mentions(result, "Launch Error " + std::to_string(test::productErrno(EAGAIN)) + ".\n"))
      << result.out;
  EXPECT_FALSE(installer_.launched());
  EXPECT_EQ(0, installer_.run().status);
  EXPECT_TRUE(installer_.launched());
}

TEST_F(Conditions, TableOfOpenFilesThatIsSmallStillInstalls) {
  installOldVersion();
  installer_.write();
  // What starts an executable of another system here has some files open, too.
  const rlim_t count = test::productIsElsewhere() ? 40 : 24;
  const test::Result result = runWith([count] {
    const rlimit limit{count, count};
    setrlimit(RLIMIT_NOFILE, &limit);
  });
  EXPECT_EQ(0, result.status) << result.out;
  EXPECT_TRUE(fs::exists(installer_.master("Quorvane-Demo-4-complete/demo.jar")));
}

TEST_F(Conditions, ParentThatIgnoresTheEndOfChildrenStillInstalls) {
  installOldVersion();
  installer_.write();
  const test::Result result = runWith([] { signal(SIGCHLD, SIG_IGN); });
  EXPECT_EQ(0, result.status) << result.out;
  EXPECT_TRUE(installer_.launched());
  EXPECT_TRUE(fs::exists(installer_.master("Quorvane-Demo-4-complete/demo.jar")));
  expectNothingLost();
}

struct Clock {
  const char* name;
  const char* startAndStep;
};

std::ostream& operator<<(std::ostream& out, const Clock& clock) {
  return out << clock.name;
}

class JumpingClock : public Conditions, public testing::WithParamInterface<Clock> {};

TEST_P(JumpingClock, InstallsAllTheSame) {
  installOldVersion();
  installer_.write();
  const test::Result result = installer_.run({}, withClock(installer_, GetParam().startAndStep));
  EXPECT_EQ(0, result.signal);
  EXPECT_EQ(0, result.status) << result.out << result.err;
  EXPECT_TRUE(installer_.launched()) << result.out;
  EXPECT_TRUE(fs::exists(installer_.master("Quorvane-Demo-4-complete/demo.jar")));
  EXPECT_TRUE(installer_.tempFolders().empty());
  expectNothingLost();
}

INSTANTIATE_TEST_SUITE_P(That, JumpingClock,
                         testing::Values(Clock{"StandsStill", "1500000000:0"},
                                         Clock{"GoesBackADayAgainAndAgain", "1800000000:-86400"},
                                         Clock{"GoesForwardADayAgainAndAgain", "1500000000:86400"},
                                         Clock{"StandsAtTheEpoch", "0:0"},
                                         Clock{"LiesBeforeTheEpoch", "-86400:1"},
                                         Clock{"PassesTheYear2038", "2147483640:1"},
                                         Clock{"LiesFarInTheFuture", "253402300800:1"}),
                         [](const auto& info) { return std::string(info.param.name); });
