#include "tools/java/jdk.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "tools/system/child_process.h"
#include "tools/system/input_error.h"
#include "tools/system/program_path.h"

namespace fs = std::filesystem;

namespace tools {

static const char kHint[] =
    "; install a JDK (on Debian the package openjdk-17-jdk), or name its folder with --jdk";

static bool isFile(const fs::path& path) {
  std::error_code ignored;
  return fs::is_regular_file(path, ignored);
}

// Returns the JDK whose jlink is on the PATH, or an empty text.
static std::string homeFromPath() {
  const std::string program = findInPath("jlink", false);
  return program.empty() ? "" : fs::canonical(program).parent_path().parent_path().string();
}

Jdk Jdk::find(const std::string& home) {
  const char* variable = getenv("JAVA_HOME");
  std::string found = home;
  std::string origin = "the folder " + home;
  if (found.empty() && variable != nullptr && *variable != '\0') {
    found = variable;
    origin = "JAVA_HOME, which is " + found + ",";
  }
  if (!found.empty() && !isFile(fs::path(found) / "bin/jlink")) {
    throw InputError(origin + " is not a JDK: it has no bin/jlink" + kHint);
  }
  if (found.empty()) {
    found = homeFromPath();
  }
  if (found.empty()) {
    throw InputError(std::string("no JDK found: JAVA_HOME is not set and PATH has no jlink") +
                     kHint);
  }
  return Jdk(fs::absolute(found));
}

std::string releaseValue(const std::string& home, const std::string& key) {
  std::ifstream in(home + "/release");
  for (std::string line; std::getline(in, line);) {
    if (line.rfind(key + "=", 0) == 0) {
      std::string value = line.substr(key.size() + 1);
      value.erase(0, value.find_first_not_of('"'));
      return value.substr(0, value.find('"'));
    }
  }
  return "";
}

std::string Jdk::featureVersion() const {
  const std::string version = releaseValue(home_, "JAVA_VERSION");
  return version.substr(0, version.find_first_not_of("0123456789"));
}

bool Jdk::hasModule(const std::string& name) const {
  return isFile(fs::path(home_) / "jmods" / (name + ".jmod"));
}

std::string Jdk::run(const std::string& program, std::vector<std::string> arguments,
                     const std::string& folder) const {
  const std::string path = home_ + "/bin/" + program;
  if (!isFile(path)) {
    throw InputError(path + " is missing" + kHint);
  }
  arguments.insert(arguments.begin(), path);
  return runForOutput(arguments, folder);
}

}  // namespace tools
