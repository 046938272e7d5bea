#include "tools/java/java_runtime.h"

#include <algorithm>
#include <filesystem>
#include <sstream>

#include "tools/java/jar_file.h"
#include "tools/system/input_error.h"
#include "tools/system/texts.h"

namespace fs = std::filesystem;

namespace tools {

static const char kEllipticCurves[] = "jdk.crypto.ec";

std::string javaHomeIn(const std::string& folder) {
  std::error_code ignored;
  for (const char* home : {"", "/Contents/Home"}) {
    if (fs::is_regular_file(folder + home + "/bin/java", ignored)) {
      return folder + home;
    }
  }
  throw InputError("the runtime " + folder +
                   " has no bin/java; name a folder made by jlink, or a JDK");
}

std::string runtimeNumber(const std::string& home) {
  constexpr size_t kMostDigits = 6;
  const std::string version = releaseValue(home, "JAVA_VERSION");
  std::istringstream in(version.substr(0, version.find_first_not_of("0123456789.")));
  std::string numbers[3] = {"", "00", "00"};
  for (std::string& number : numbers) {
    std::string part;
    if (std::getline(in, part, '.') && !part.empty()) {
      number = part.size() < number.size() ? "0" + part : part.substr(0, kMostDigits);
    }
  }
  return numbers[0].empty() ? "" : numbers[0] + numbers[1] + numbers[2];
}

static std::vector<std::string> absolute(const std::vector<std::string>& paths) {
  std::vector<std::string> all;
  for (const std::string& path : paths) {
    all.push_back(fs::absolute(path));
  }
  return all;
}

// The names in jdeps's output: on its last line, because warnings may precede it.
static std::vector<std::string> namesIn(const std::string& output) {
  std::string last;
  std::istringstream lines(output);
  for (std::string line; std::getline(lines, line);) {
    last = line.empty() ? last : line;
  }
  std::vector<std::string> names;
  std::istringstream in(last);
  for (std::string name; std::getline(in, name, ',');) {
    names.push_back(name);
  }
  return names;
}

std::vector<std::string> modulesOf(const Jdk& jdk, const std::vector<std::string>& jars) {
  for (const std::string& jar : jars) {
    (void)readJar(jar);
  }
  const std::vector<std::string> paths = absolute(jars);
  const std::string release = jdk.featureVersion();
  std::vector<std::string> arguments = {"--print-module-deps", "--ignore-missing-deps",
                                        "--multi-release",     release.empty() ? "base" : release,
                                        "--class-path",        joined(paths, ":")};
  arguments.insert(arguments.end(), paths.begin(), paths.end());
  std::vector<std::string> modules = namesIn(jdk.run("jdeps", arguments));
  if (modules.empty()) {
    throw InputError("jdeps finds no modules for " + joined(jars, " ") +
                     "; list them as 'modules' in [runtime]");
  }
  const bool isListed = std::count(modules.begin(), modules.end(), kEllipticCurves) > 0;
  if (!isListed && jdk.hasModule(kEllipticCurves)) {
    modules.emplace_back(kEllipticCurves);
  }
  return modules;
}

const std::vector<std::string> LINK_OPTIONS = {"--strip-java-debug-attributes", "--no-header-files",
                                               "--no-man-pages", "--compress=2"};

void linkRuntime(const Jdk& jdk, const std::vector<std::string>& modules, const std::string& jmods,
                 const std::string& folder) {
  std::vector<std::string> arguments = LINK_OPTIONS;
  arguments.insert(arguments.end(),
                   {"--add-modules", joined(modules, ","), "--output", fs::absolute(folder)});
  if (!jmods.empty()) {
    arguments.insert(arguments.end(), {"--module-path", fs::absolute(jmods)});
  }
  jdk.run("jlink", arguments);
}

}  // namespace tools
