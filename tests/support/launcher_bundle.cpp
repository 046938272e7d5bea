#include "tests/support/launcher_bundle.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <regex>

#include "tests/support/files.h"
#include "tests/support/product_system.h"

namespace fs = std::filesystem;

namespace test {

LauncherBundle::LauncherBundle() {
  fs::create_directories(fs::path(executable()).parent_path());
  fs::create_directories(resources());
  fs::copy_file(product("launcher"), executable());
}

void LauncherBundle::appendTail(const Tail& tail) const {
  writeFile(executable(), readFile(executable()) + tailMarker() + fieldsOf(tail), 0755);
}

void LauncherBundle::writeTailFile(const Tail& tail) const {
  writeFile(resources() + "/Tail", fieldsOf(tail));
}

void LauncherBundle::installRuntime(const std::string& runtime) const {
  fs::create_directories(master());
  fs::create_directory_symlink(runtime, this->runtime());
}

void LauncherBundle::installLibrary(const std::string& library, const std::string& place) const {
  const fs::path path = runtime() + "/" + place;
  fs::create_directories(path.parent_path());
  fs::copy_file(library, path);
}

Command LauncherBundle::command(const std::vector<std::string>& words) const {
  Command command;
  command.arguments = words;
  command.arguments.insert(command.arguments.begin(), executable());
  command.environment = home.environment();
  command.folder = folder_.path();
  return command;
}

Result LauncherBundle::run(const std::vector<std::string>& words,
                           const std::map<std::string, std::string>& environment) const {
  EXPECT_NE(nullptr, getenv("DISPLAY")) << "no display: run the tests under scripts/with-display";
  Command toRun = command(words);
  toRun.environment.insert(environment.begin(), environment.end());
  return test::run(toRun);
}

Result LauncherBundle::runWithoutDisplay(const std::vector<std::string>& words) const {
  Command toRun = command(words);
  toRun.unset = {"DISPLAY"};
  return test::run(toRun);
}

std::vector<std::string> messagesOf(const std::string& standardOutput) {
  static const std::regex kElapsedTime("\\+(?=[0-9]+ +)[0-9 ]{8} ");
  // These have no line end, and the launch thread may write at any time after them.
  static const std::regex kOpenLine("Created NSApplication|About to cload OSX UI NIB");
  const std::string text =
      std::regex_replace(std::regex_replace(standardOutput, kElapsedTime, "\n"), kOpenLine, "$&\n");
  std::vector<std::string> messages;
  for (const std::string& line : linesOf(text)) {
    if (!line.empty()) {
      messages.push_back(line);
    }
  }
  return messages;
}

}  // namespace test
