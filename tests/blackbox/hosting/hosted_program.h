#ifndef QUORVANE_TESTS_BLACKBOX_HOSTING_HOSTED_PROGRAM_H
#define QUORVANE_TESTS_BLACKBOX_HOSTING_HOSTED_PROGRAM_H

#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "tests/installer/installer.h"
#include "tests/support/launcher_bundle.h"
#include "tests/support/process.h"

// The ways in which a Java program comes to run inside another program's process.
enum class Start { Launcher, FirstInstallation, Update, QuickLaunch, SilentInstallation };

// How the test's name shows it.
std::string nameOf(Start start);
void PrintTo(Start start, std::ostream* out);

constexpr Start kInstallerStarts[] = {Start::FirstInstallation, Start::Update, Start::QuickLaunch};
constexpr Start kAllStarts[] = {Start::Launcher, Start::FirstInstallation, Start::Update,
                                Start::QuickLaunch, Start::SilentInstallation};

// The name that the launch file gives to the program that an installer starts.
extern const char kHostedName[];

// A guest program (tests/fakes/java/guest) and what starts it. A silent installation has no
// display.
class HostedProgram {
 public:
  // `runtime` is the folder of a real Java runtime.
  HostedProgram(Start start, const std::string& mainClass,
                const std::string& runtime = QUORVANE_TEST_RUNTIME);

  std::vector<std::string> options{};  // of the JVM
  std::vector<std::string> steps{};    // the program's arguments

  // What runs the program once, to be changed and run. It installs what has to be there before.
  test::Command command() const;

  // The process's name while it has none of its own.
  std::string processName() const { return isLauncher() ? "Demo" : "Setup"; }

  const test::TestHome& home() const { return isLauncher() ? bundle_->home : installer_->home; }

 private:
  bool isLauncher() const { return start_ == Start::Launcher; }
  test::Command launcherCommand() const;
  test::Command installerCommand() const;
  void writeInstaller() const;

  Start start_;
  std::string mainClass_;
  std::string runtime_;
  std::unique_ptr<test::LauncherBundle> bundle_;
  std::unique_ptr<test::Installer> installer_;
};

// The lines that guest.Hosted printed, without their common beginning.
std::vector<std::string> answersIn(const std::string& standardOutput);

#endif
