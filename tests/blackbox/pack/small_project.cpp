#include "tests/blackbox/pack/small_project.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <set>

#include "tests/support/files.h"
#include "tests/support/jar_bytes.h"
#include "tests/support/mach_file.h"
#include "tests/support/object_headers.h"
#include "tests/support/test_keys.h"
#include "tools/formats/launch_file_writer.h"
#include "tools/objects/target.h"

namespace fs = std::filesystem;
using namespace std::string_literals;

namespace test {

static const char kText[] = R"([application]
name = "Small App"
version = "3"
identifier = "org.example.small"
folder = "app"
main_class = "org.example.Main"
icon = "small.icns"

[updater]
folder = "updater"
version = "5"

[runtime]
folder = "runtime"

[installer]
splash = "splash.png"

[signing]
key = "release.key"
)";

// A PNG of one grey pixel.
static const std::string kPng =
    "\x89\x50\x4e\x47\x0d\x0a\x1a\x0a\x00\x00\x00\x0d\x49\x48\x44\x52"
    "\x00\x00\x00\x01\x00\x00\x00\x01\x08\x00\x00\x00\x00\x3a\x7e\x9b"
    "\x55\x00\x00\x00\x0d\x49\x44\x41\x54\x78\x01\x01\x02\x00\xfd\xff"
    "\x00\x80\x00\x82\x00\x81\xc3\x6e\x25\xe0\x00\x00\x00\x00\x49\x45"
    "\x4e\x44\xae\x42\x60\x82"s;

static std::string launchFile(const std::string& mainClass, const std::string& jar) {
  tools::LaunchFile launch;
  launch.mainClass = mainClass;
  launch.appName = "Small App";
  launch.classPath = {jar};
  return tools::encodeLaunchFile(launch);
}

std::string standIn(const std::string& name, const std::string& target) {
  const std::string arm = "arm64";
  const bool isArm = target.size() >= arm.size() &&
                     target.compare(target.size() - arm.size(), arm.size(), arm) == 0;
  const std::string content = "stands in for " + name + "\n";
  if (target.rfind("macos", 0) != 0) {
    return elfFile(isArm ? ELF_ARM64 : ELF_X86_64, ELF_PROGRAM) + content;
  }
  // No Mac runs code for arm64 without a signature.
  return isArm ? signedMachFile(MACH_ARM64, MACH_PROGRAM, content, {})
               : macFile(MACH_X86_64, MACH_PROGRAM) + content;
}

// The product's executables in the folder `folder`.
static void makeStandIns(const std::string& folder, const std::string& target) {
  for (const char* name : {"launcher", "extractor", "lzma64"}) {
    writeFile(folder + "/" + name, standIn(name, target), 0700);
  }
}

SmallProject::SmallProject() : text(kText) {
  setenv("XDG_CACHE_HOME", (folder_ / "cache").c_str(), 1);
  writeFile(folder_ / "app/main.jar", jarOfClass("org.example.Main"));
  writeFile(folder_ / "app/lib/other.jar", jarOf({{"a library", "as it is"}}));
  writeFile(folder_ / "updater/updater.jar", jarOfClass("org.example.Updater"));
  writeFile(folder_ / "updater/QuorvaneLaunch", launchFile("org.example.Updater", "updater.jar"));
  writeFile(folder_ / "runtime/bin/java", "a java", 0755);
  writeFile(folder_ / "runtime/release", "JAVA_VERSION=\"17.0.15\"\n");
  writeFile(folder_ / "splash.png", kPng);
  writeFile(folder_ / "small.icns", "icns\0\0\0\x16ic07\0\0\0\x0eno PNG"s);
  writeFile(folder_ / "release.key", readFile(keyFile("first")), 0600);
  makeStandIns(folder_ / "bin", tools::targetText(tools::thisMachine()));
}

Transcript SmallProject::pack(const std::vector<std::string>& words,
                              const std::map<std::string, std::string>& environment) const {
  return runPack(path(), words, environment);
}

std::string SmallProject::extracted(const std::string& archive) const {
  const Transcript key = pack({"key", "show", "release.key"});
  key.ends(0);
  writeFile(folder_ / "release.pub", key.out);
  std::string name;
  for (int i = 0; name.empty() || exists(folder_ / name); ++i) {
    name = "extracted" + std::to_string(i);
  }
  pack({"archive", "extract", "--public-key", "release.pub", archive, name}).ends(0);
  return folder_ / name;
}

Transcript SmallProject::buildDownloads(
    const std::vector<std::string>& words,
    const std::map<std::string, std::string>& environment) const {
  writeFile(folder_ / "quorvane.toml", text);
  const auto option = std::find(words.begin(), words.end(), "--target");
  if (option != words.end()) {
    makeStandIns(folder_ / "bin", *(option + 1));
  }
  std::vector<std::string> all = {"build", "--executables", "bin"};
  all.insert(all.end(), words.begin(), words.end());
  return pack(all, environment);
}

Transcript SmallProject::build(std::vector<std::string> words,
                               const std::map<std::string, std::string>& environment) const {
  words.insert(words.begin(), {"--bundles", "--launcher-bundle"});
  return buildDownloads(words, environment);
}

void SmallProject::replace(const std::string& from, const std::string& to) {
  const size_t at = text.find(from);
  ASSERT_NE(std::string::npos, at) << from;
  ASSERT_EQ(std::string::npos, text.find(from, at + 1)) << from;
  text.replace(at, from.size(), to);
}

std::string bundleIn(const std::string& dist, const std::string& kind, const std::string& name) {
  return dist + "/bundles/" + tools::targetText(tools::thisMachine()) + "/" + kind + "/" + name +
         ".app";
}

std::string downloadOf(const std::string& kind, const std::string& name) {
  const tools::Target target = tools::thisMachine();
  return name + "-3-" + tools::targetText(target) + kind +
         (target.system == tools::System::macos ? ".zip" : ".tar.gz");
}

void makeJar(const std::string& folder, const std::string& path, const std::string& lines) {
  writeFile(folder + "/manifest", lines);
  writeFile(folder + "/content", "content");
  fs::create_directories(fs::path(folder + "/" + path).parent_path());
  runShell(folder, "jar --create --file '" + path + "' --manifest manifest content").ends(0);
}

std::string digestOf(const std::string& path) {
  const Result result = run({{"/usr/bin/sha256sum", "--", path}, {}, {}, "", 60});
  EXPECT_EQ(0, result.status) << result.err;
  return result.out.substr(result.out[0] == '\\' ? 1 : 0, 64);
}

std::string manifestOf(const std::string& folder) {
  std::set<std::string> paths;
  for (const auto& entry : fs::recursive_directory_iterator(folder)) {
    paths.insert(entry.path());
  }
  std::string manifest;
  for (const std::string& path : paths) {
    char mode[8];
    snprintf(mode, sizeof mode, "%04o", modeOf(path));
    manifest += std::string(mode) + "  " + (fs::is_directory(path) ? "folder" : digestOf(path)) +
                "  " + fs::path(path).lexically_relative(folder).string() + "\n";
  }
  return manifest;
}

}  // namespace test
