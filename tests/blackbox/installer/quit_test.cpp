// Quitting while a Java program runs in the process: its shutdown hooks run, whatever asks. Without
// one, during an installation, the process ends at once.

#include <gtest/gtest.h>
#include <signal.h>

#include <filesystem>
#include <memory>
#include <ostream>

#include "tests/installer/installer.h"
#include "tests/support/background.h"
#include "tests/support/files.h"
#include "tests/support/launcher_bundle.h"
#include "tests/support/temp_folder.h"
#include "tests/support/wait.h"
#include "tools/formats/launch_file_writer.h"

namespace fs = std::filesystem;

namespace {

const char kMainClass[] = "guest.Staying";

// A process that runs the Java program.
class Host {
 public:
  virtual ~Host() = default;
  virtual std::string name() const = 0;  // the process's
  virtual test::Command command() const = 0;
};

class LauncherHost : public Host {
 public:
  LauncherHost() {
    bundle_.appendTail(test::Tail());
    bundle_.installRuntime();
  }
  std::string name() const override { return "Demo"; }
  test::Command command() const override {
    test::Command command;
    command.arguments = {bundle_.executable(), "-cp", QUORVANE_TEST_CLASSES, kMainClass};
    command.environment = bundle_.home.environment();
    return command;
  }

 private:
  test::LauncherBundle bundle_;
};

// An installer that finds everything current, so that it starts the updater in its process.
class InstallerHost : public Host {
 public:
  InstallerHost() {
    const std::string updater = installer_.master("Quorvane-Quorvane-5-complete");
    tools::LaunchFile file;
    file.mainClass = kMainClass;
    file.appName = "Demo";
    file.classPath = {"classes"};
    test::writeFile(updater + "/QuorvaneLaunch", tools::encodeLaunchFile(file));
    fs::create_directory_symlink(QUORVANE_TEST_CLASSES, updater + "/classes");
    fs::create_directory_symlink(QUORVANE_TEST_RUNTIME, installer_.runtimeFolder());
    installer_.installApplication("3");
    installer_.write();
  }
  std::string name() const override { return "Setup"; }
  test::Command command() const override {
    test::Command command = installer_.command();
    command.unset.clear();
    return command;
  }

 private:
  test::Installer installer_;
};

template <typename T>
std::unique_ptr<Host> make() {
  return std::make_unique<T>();
}

// Who asks the process `id`, named `name`, to end.
std::vector<std::string> throughMenu(const std::string& name, pid_t) {
  static const char kScript[] = "\"$1\" open \"$2\" && \"$1\" quit \"$2\"";
  return {"/bin/bash", "-c", kScript, "script", QUORVANE_SOURCE "/scripts/app-menu", name};
}

// The menu is the program's, in whatever process it runs.
std::vector<std::string> throughProgramsMenu(const std::string&, pid_t id) {
  return throughMenu("Demo", id);
}

std::vector<std::string> fromAnotherProgram(const std::string& name, pid_t) {
  return {QUORVANE_BIN "/url_sender", name, "quit"};
}

std::vector<std::string> withASignal(const std::string&, pid_t id) {
  return {"/bin/kill", "-TERM", std::to_string(id)};
}

struct Case {
  const char* name;
  std::unique_ptr<Host> (*host)();
  std::vector<std::string> (*quit)(const std::string& name, pid_t id);
  int status;
};

std::ostream& operator<<(std::ostream& stream, const Case& value) {
  return stream << value.name;
}

const Case kCases[] = {
    {"LauncherMenu", make<LauncherHost>, throughProgramsMenu, 0},
    {"LauncherOtherProgram", make<LauncherHost>, fromAnotherProgram, 0},
    {"LauncherSignal", make<LauncherHost>, withASignal, 128 + SIGTERM},
    {"InstallerMenu", make<InstallerHost>, throughProgramsMenu, 0},
    {"InstallerOtherProgram", make<InstallerHost>, fromAnotherProgram, 0},
    {"InstallerSignal", make<InstallerHost>, withASignal, 128 + SIGTERM},
};

// What a process prints and how it ends, on a screen of its own.
class StartedProcess {
 public:
  explicit StartedProcess(test::Command command) {
    command.environment["DISPLAY"] = display_.name();
    id_ = test::start(command, folder_ / "out", folder_ / "err");
  }

  pid_t id() const { return id_; }

  // What it has printed; it makes the file when it starts.
  std::string out() const {
    return test::exists(folder_ / "out") ? test::readFile(folder_ / "out") : "";
  }
  std::string err() const { return test::readFile(folder_ / "err"); }

  bool prints(const std::string& line) const {
    return test::comesTrue([&] { return out().find(line + "\n") != std::string::npos; });
  }

  // Asks it to end with `words`, unless `isReady` is false; returns how it ended.
  test::Result quitWith(const std::vector<std::string>& words, const test::Command& like,
                        bool isReady) {
    test::Command quitting = like;
    quitting.arguments = words;
    quitting.environment["DISPLAY"] = display_.name();
    quitting.seconds = 60;
    const test::Result asked = isReady ? test::run(quitting) : test::Result{};
    EXPECT_EQ(0, asked.status) << asked.err;
    return test::waitForChild(id_, asked.status == 0 ? 60 : 0);
  }

 private:
  test::OwnDisplay display_;
  test::TempFolder folder_;
  pid_t id_ = 0;
};

class Quit : public testing::TestWithParam<Case> {};

}  // namespace

TEST_P(Quit, RunsTheShutdownHooksOfJava) {
  const std::unique_ptr<Host> host = GetParam().host();
  const test::Command command = host->command();
  StartedProcess process(command);
  const bool isUp = process.prints("[Guest] stays");
  EXPECT_TRUE(isUp);
  const test::Result ended =
      process.quitWith(GetParam().quit(host->name(), process.id()), command, isUp);
  EXPECT_EQ(GetParam().status, ended.status) << process.err();
  EXPECT_NE(std::string::npos, process.out().find("[Guest] hook\n")) << process.out();
}

INSTANTIATE_TEST_SUITE_P(Java, Quit, testing::ValuesIn(kCases),
                         [](const testing::TestParamInfo<Case>& info) {
                           return std::string(info.param.name);
                         });

class QuitDuringAnInstallation : public testing::TestWithParam<Case> {};

INSTANTIATE_TEST_SUITE_P(Asked, QuitDuringAnInstallation,
                         testing::Values(Case{"InItsMenu", nullptr, throughMenu, 0},
                                         Case{"ByAnotherProgram", nullptr, fromAnotherProgram, 0}),
                         [](const testing::TestParamInfo<Case>& info) {
                           return std::string(info.param.name);
                         });

// The runtime that it installs waits, when it is run to write its class data.
TEST_P(QuitDuringAnInstallation, EndsTheProcessWithZero) {
  test::Installer installer;
  const std::string waiting = installer / "waiting";
  installer.runtime = test::nestedRecord(
      "runtime", test::Installer::runtimeRecords() +
                     test::fileRecord("Contents/Home/bin/java",
                                      "#!/bin/sh\ntouch '" + waiting + "'\nexec sleep 100\n"));
  installer.updater[2] = test::fileRecord(
      "nativesplash.png", test::readFile(QUORVANE_SOURCE "/examples/splash/nativesplash.png"));
  installer.write();
  test::Command command = installer.command();
  command.unset.clear();
  StartedProcess process(command);
  const bool isInstalling = test::comesTrue([&] { return test::exists(waiting); });
  EXPECT_TRUE(isInstalling);
  const test::Result ended =
      process.quitWith(GetParam().quit("Setup", process.id()), command, isInstalling);
  EXPECT_EQ(0, ended.status) << process.err();
  EXPECT_FALSE(installer.launched());
}
