#include "tests/blackbox/hosting/hosted_program.h"

#include <gtest/gtest.h>

#include "tests/support/files.h"
#include "tools/formats/launch_file_writer.h"

using test::fileRecord;
using test::nestedRecord;

const char kHostedName[] = "Hosted Demo";

std::string nameOf(Start start) {
  static const char* const kNames[] = {"Launcher", "FirstInstallation", "Update", "QuickLaunch",
                                       "SilentInstallation"};
  return kNames[static_cast<int>(start)];
}

void PrintTo(Start start, std::ostream* out) {
  *out << nameOf(start);
}

HostedProgram::HostedProgram(Start start, const std::string& mainClass, const std::string& runtime)
    : start_(start), mainClass_(mainClass), runtime_(runtime) {
  if (isLauncher()) {
    bundle_ = std::make_unique<test::LauncherBundle>();
    bundle_->appendTail(test::Tail());
    bundle_->installRuntime(runtime_);
  } else {
    installer_ = std::make_unique<test::Installer>();
  }
}

// A runtime that is small enough to be carried, whose JVM is that of another one.
static std::string carriedRuntime() {
  return fileRecord("Contents/Home/bin/java", test::readFile(QUORVANE_BIN "/fake_java")) +
         fileRecord("Contents/Home/lib/server/libjvm.so", test::readFile(QUORVANE_FORWARDING_JVM)) +
         fileRecord("Contents/Home/release", test::Installer::runtimeRelease());
}

// The program's classes, those inside of it included.
static std::string classRecords(const std::string& mainClass) {
  const std::string own = mainClass.substr(mainClass.find('.') + 1);
  std::string records;
  for (const std::string& name : test::namesIn(QUORVANE_TEST_CLASSES "/guest")) {
    if (name == own + ".class" || name.rfind(own + "$", 0) == 0) {
      records += fileRecord("classes/guest/" + name,
                            test::readFile(QUORVANE_TEST_CLASSES "/guest/" + name));
    }
  }
  return records;
}

void HostedProgram::writeInstaller() const {
  tools::LaunchFile file;
  file.mainClass = mainClass_;
  file.appName = kHostedName;
  file.classPath = {"classes"};
  file.arguments = steps;
  installer_->updater[1] =
      nestedRecord("updater", fileRecord("QuorvaneLaunch", tools::encodeLaunchFile(file)) +
                                  classRecords(mainClass_));
  installer_->runtime = nestedRecord("runtime", carriedRuntime());
  installer_->write();
  test::writeFile(installer_->installed.lastOptions("1407"), tools::encodeOptionsFile(options));
}

test::Command HostedProgram::installerCommand() const {
  writeInstaller();
  test::Command command = installer_->command();
  command.environment["QUORVANE_REAL_JVM"] = runtime_ + "/lib/server/libjvm.so";
  command.unset.clear();
  command.seconds = 240;
  if (start_ == Start::Update) {
    installer_->installUpdater("4");
    installer_->installApplication("2");
  } else if (start_ == Start::QuickLaunch) {
    test::Command installation = command;
    installation.arguments.push_back("--elevated");
    EXPECT_EQ(0, test::run(installation).status);
  } else if (start_ == Start::SilentInstallation) {
    command.arguments.push_back("-silent");
    command.unset = {"DISPLAY"};
  }
  return command;
}

test::Command HostedProgram::launcherCommand() const {
  test::Command command;
  command.arguments = {bundle_->executable()};
  command.arguments.insert(command.arguments.end(), options.begin(), options.end());
  command.arguments.insert(command.arguments.end(), {"-cp", QUORVANE_TEST_CLASSES, mainClass_});
  command.arguments.insert(command.arguments.end(), steps.begin(), steps.end());
  command.environment = bundle_->home.environment();
  command.folder = bundle_->home.path();
  command.seconds = 240;
  return command;
}

test::Command HostedProgram::command() const {
  return isLauncher() ? launcherCommand() : installerCommand();
}

std::vector<std::string> answersIn(const std::string& standardOutput) {
  const std::string start = "[Hosted] ";
  std::vector<std::string> answers;
  // A log message without a line end may come before an answer.
  for (const std::string& line : test::linesOf(standardOutput)) {
    const size_t at = line.find(start);
    if (at != std::string::npos) {
      answers.push_back(line.substr(at + start.size()));
    }
  }
  return answers;
}
