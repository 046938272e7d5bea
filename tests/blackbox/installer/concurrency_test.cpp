// Many installers at once, and an application that runs while it is updated.
//
// QUORVANE_ROUNDS is how often eight installers start at once (two times where it is not set).

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "tests/blackbox/installer/current_installation.h"
#include "tests/blackbox/installer/launcher_only.h"
#include "tests/blackbox/installer/starts.h"
#include "tests/support/background.h"
#include "tests/support/product_system.h"

namespace fs = std::filesystem;
using test::Installer;

namespace {

class Concurrency : public testing::Test {
 protected:
  // Runs the commands at the same time.
  static std::vector<test::Result> runAtOnce(const std::vector<test::Command>& commands) {
    std::vector<test::Result> results(commands.size());
    std::vector<std::thread> threads;
    for (size_t i = 0; i < commands.size(); ++i) {
      threads.emplace_back([&, i] { results[i] = test::run(commands[i]); });
    }
    for (std::thread& thread : threads) {
      thread.join();
    }
    return results;
  }

  static void expectAllLaunched(const std::vector<test::Result>& results) {
    for (const test::Result& result : results) {
      EXPECT_EQ(0, result.status) << result.out;
      EXPECT_TRUE(mentions(result, "[JNILauncher] Done!")) << result.out;
    }
  }

  static int rounds() {
    const char* wanted = getenv("QUORVANE_ROUNDS");
    return wanted == nullptr ? 2 : atoi(wanted);
  }

  Installer installer_;
};

}  // namespace

TEST_F(Concurrency, EightInstallersOfOneApplicationAllEndWithItRunning) {
  installer_.write();
  for (int round = 0; round < rounds() && !HasFailure(); ++round) {
    SCOPED_TRACE("round " + std::to_string(round));
    fs::remove_all(installer_.master());
    std::vector<test::Command> commands(8, installer_.command());
    for (test::Command& command : commands) {
      command.seconds = 120;
    }
    expectAllLaunched(runAtOnce(commands));
    EXPECT_EQ(4u, installer_.versionFolders().size());
    EXPECT_TRUE(installer_.tempFolders().empty());
    expectVersionFoldersStart(installer_);
  }
  printf("%d rounds\n", rounds());
}

TEST_F(Concurrency, InstallersOfDifferentVersionsLeaveTheNewestToStartAndNoneBroken) {
  for (int round = 0; round < rounds() && !HasFailure(); ++round) {
    fs::remove_all(installer_.master());
    std::vector<test::Command> commands;
    // One bundle each, beside the other's.
    for (const char* version : {"3", "4", "5", "6"}) {
      installer_.tail.appVersion = version;
      installer_.tail.guVersion = version;
      installer_.application[0] =
          test::nestedRecord("application", Installer::applicationRecords(version));
      installer_.write();
      const std::string copy = installer_ / (std::string("Setup") + version + ".app");
      fs::remove_all(copy);
      fs::copy(installer_ / "Setup.app", copy, fs::copy_options::recursive);
      test::Command command = installer_.command();
      command.arguments[0] = copy + "/Contents/MacOS/Setup";
      command.seconds = 120;
      commands.push_back(command);
    }
    expectAllLaunched(runAtOnce(commands));
    const test::Result next = LauncherOnly(installer_).run();
    EXPECT_EQ("Quorvane-Quorvane-6-complete", startedBy(installer_, next).updater) << next.out;
    EXPECT_TRUE(fs::exists(installer_.master("Quorvane-Demo-6-complete")));
    EXPECT_TRUE(installer_.tempFolders().empty());
    expectVersionFoldersStart(installer_);
  }
}

namespace {

// `--install` beside other runs.
class ConcurrentInstall : public Concurrency {
 protected:
  ConcurrentInstall() { installer_.tail.publicKey = key_.publicKeyHex(); }

  // The command that installs a runtime which takes a while to extract.
  test::Command installRuntime(const Installer& installer, const std::string& version) const {
    const std::string records =
        Installer::runtimeRecords() +
        test::fileRecord("Contents/Home/lib/classes", test::noise(6 << 20)) +
        test::fileRecord("qvArcSpBlock_Component", "Mac64JRE " + version);
    return install(installer, "Mac64JRE", version, records);
  }

  test::Command install(const Installer& installer, const std::string& component,
                        const std::string& version, const std::string& records) const {
    const std::string archive = installer / ("download-" + component);
    test::writeFile(archive, test::compressed(test::signedBy(key_, records)));
    test::Command command = installer.command({"--install", component, version, archive});
    command.seconds = 120;
    return command;
  }

  const tools::SigningKey key_ = test::testKey("first");
};

}  // namespace

TEST_F(ConcurrentInstall, EightStartsDuringTheUpdateOfTheirRuntimeAllEndWithTheApplicationRunning) {
  installer_.write();
  EXPECT_EQ(0, installer_.run().status);
  std::vector<test::Command> commands(8, installer_.command());
  commands.push_back(installRuntime(installer_, "1500"));
  // The starts are spread over the time that the update takes.
  for (size_t i = 0; i < 8; ++i) {
    const std::string program = commands[i].arguments[0];
    commands[i].arguments = {"/bin/sh", "-c", "sleep 0." + std::to_string(i) + "; exec \"$0\"",
                             program};
    commands[i].seconds = 120;
  }
  std::vector<test::Result> results = runAtOnce(commands);
  EXPECT_EQ(0, results.back().status) << results.back().out;
  results.pop_back();
  expectAllLaunched(results);
  EXPECT_TRUE(installer_.tempFolders().empty());
  expectVersionFoldersStart(installer_);
  const test::Result next = LauncherOnly(installer_).run();
  EXPECT_EQ("Quorvane-Mac64JRE-1500-complete", startedBy(installer_, next).runtime) << next.out;
}

TEST_F(ConcurrentInstall, TwoApplicationsThatAreUpdatedAtOnceEachGetTheirOwn) {
  installer_.write();
  EXPECT_EQ(0, installer_.run().status);
  // Another application of the same account.
  Installer other;
  other.tail.publicKey = key_.publicKeyHex();
  other.tail.appName = "Other";
  other.write();
  const std::string master = installer_.home.applicationSupport() + "/Quorvane-Other/";
  test::Command start = other.command();
  start.environment = installer_.command().environment;
  EXPECT_EQ(0, test::run(start).status);

  const auto recordsOf = [](const std::string& name) {
    return test::fileRecord("large", test::noise(3 << 20)) + Installer::applicationRecords("4") +
           test::fileRecord("whose", name) +
           test::fileRecord("qvArcSpBlock_Component", name + " 4");
  };
  test::Command updateOther = install(other, "Other", "4", recordsOf("Other"));
  updateOther.environment = start.environment;
  const std::vector<test::Result> results =
      runAtOnce({install(installer_, "Demo", "4", recordsOf("Demo")), updateOther});
  EXPECT_EQ(0, results[0].status) << results[0].out;
  EXPECT_EQ(0, results[1].status) << results[1].out;
  EXPECT_EQ("Demo", test::readFile(installer_.master("Quorvane-Demo-4-complete/whose")));
  EXPECT_EQ("Other", test::readFile(master + "Quorvane-Other-4-complete/whose"));
  EXPECT_FALSE(fs::exists(installer_.master("Quorvane-Other-4-complete")));
  EXPECT_FALSE(fs::exists(master + "Quorvane-Demo-4-complete"));
  expectVersionFoldersStart(installer_);
}

// An application whose runtime's java looks for its own library, and for its application, all the
// time, until it is told to stop.
class RunningApplication : public Concurrency {
 protected:
  void installAndStart() {
    installer_.runtime =
        test::nestedRecord("runtime", Installer::runtimeRecords() +
                                          test::fileRecord("Contents/Home/bin/java", java()));
    installer_.properties = {{"force_spawn", "true"}};
    installer_.write();
    // The java that the launch spawns is left behind on purpose.
    test::Command wait = installer_.command();
    wait.arguments = {"/bin/sh", "-c",
                      "\"$0\" & while [ ! -e '" + ended_ + "' ]; do sleep 0.05; done",
                      installer_.executable()};
    application_ = std::make_unique<test::Background>(wait);
  }

  // Waits until it has looked for everything at least once from now on.
  void awaitALook() {
    for (int i = 0; i < 2; ++i) {
      fs::remove(looked_);
      ASSERT_TRUE(appears(looked_)) << application_->out();
    }
  }

  void stop() {
    test::writeFile(installer_ / "stop", "");
    EXPECT_TRUE(appears(ended_)) << application_->out();
  }

  std::string missed() const { return test::exists(missing_) ? test::readFile(missing_) : ""; }

 private:
  static bool appears(const std::string& file) {
    for (int i = 0; i < 600 && !test::exists(file); ++i) {
      std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
    return test::exists(file);
  }

  // In the test's folder: "missing" gets a line for what is not found, "looked" is made after each
  // look, "ended" at the end. The launch by the update's installer is not the one to be watched.
  std::string java() const {
    return "#!/bin/sh\ncd '" + (installer_ / "") + "'\nlibrary=" + test::jvmLibraryPlace() + R"sh(
case "$*" in *updater.Main*) ;; *) exit 0 ;; esac
mkdir watched || exit 0
home=$(dirname "$(dirname "$0")")
master=$(dirname "$home")
while [ ! -e stop ]; do
  [ -e "$home/$library" ] || echo runtime >> missing
  [ -e "$master/Quorvane-Demo-3-complete/demo.jar" ] || echo app >> missing
  : > looked
done
: > ended
)sh";
  }

  const std::string missing_ = installer_ / "missing";
  const std::string looked_ = installer_ / "looked";
  const std::string ended_ = installer_ / "ended";
  std::unique_ptr<test::Background> application_;
};

TEST_F(RunningApplication, ThatIsUpdatedRunsOnAndKeepsItsFiles) {
  installAndStart();
  awaitALook();
  carryUpdate(&installer_);
  installer_.write();
  const test::Result result = installer_.run();
  EXPECT_EQ(0, result.status) << result.out;
  EXPECT_TRUE(fs::exists(installer_.master("Quorvane-Demo-4-complete/demo.jar")));
  awaitALook();
  stop();
  EXPECT_EQ("", missed());
}
