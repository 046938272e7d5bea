#include "tests/blackbox/installer/launcher_only.h"

#include <algorithm>
#include <filesystem>
#include <utility>

#include "tests/support/files.h"

namespace fs = std::filesystem;
using test::Installer;

static bool spawns(const Installer& installer) {
  return std::count(installer.properties.begin(), installer.properties.end(),
                    std::make_pair(std::string("force_spawn"), std::string("true"))) > 0;
}

static std::string contentOf(const std::string& file) {
  return test::exists(file) ? test::readFile(file) : "";
}

// What the JVM in the process, or the java, was given, where that was the updater's main class.
static std::string reportOf(const Installer& installer) {
  const bool spawned = spawns(installer);
  const std::string report = contentOf(spawned ? installer.javaReport() : installer.jvmReport());
  const bool isUpdater = report.find(spawned ? test::field("updater.Main")
                                             : "FindClass updater/Main") != std::string::npos;
  return isUpdater ? report : "";
}

// The text between the first `before` and the next `after`; empty without them.
static std::string between(const std::string& text, const std::string& before,
                           const std::string& after) {
  const size_t begin = text.find(before);
  const size_t end = begin == std::string::npos ? begin : text.find(after, begin);
  if (end == std::string::npos) {
    return "";
  }
  return text.substr(begin + before.size(), end - begin - before.size());
}

test::Result runAndAwait(const Installer& installer, test::Command command) {
  fs::remove(installer.jvmReport());
  fs::remove(installer.javaReport());
  if (spawns(installer)) {
    command.until = [&installer] { return !reportOf(installer).empty(); };
  }
  return test::run(command);
}

// The version folder that holds the updater on the class path.
static std::string updaterIn(const std::string& report, const std::string& master) {
  const size_t end = report.find("/updater.jar");
  const size_t begin = end == std::string::npos ? end : report.rfind(master + "/", end);
  return begin == std::string::npos
             ? ""
             : report.substr(begin + master.size() + 1, end - begin - master.size() - 1);
}

Started startedBy(const Installer& installer, const test::Result& result) {
  const std::string report = reportOf(installer);
  if (report.empty()) {
    return {};
  }
  return {updaterIn(report, installer.master()),
          between(result.out, "[Extractor] Using private JRE ", "\n")};
}

LauncherOnly::LauncherOnly(const Installer& installed) : installed_(installed) {
  launcher_.makeOnline("http://192.0.2.10/");
  launcher_.tail.guVersion.clear();
  launcher_.updater.clear();
  launcher_.properties = installed.properties;
  launcher_.write();
}

test::Result LauncherOnly::run() {
  const std::string kept = installed_ / "kept";
  const bool stands = fs::exists(installed_.master());
  if (stands) {
    // The copy stands in its place, since links in it name their targets with whole paths.
    fs::rename(installed_.master(), kept);
    fs::copy(kept, installed_.master(),
             fs::copy_options::recursive | fs::copy_options::copy_symlinks);
  }
  test::Command command = installed_.command();
  command.arguments[0] = launcher_.executable();
  const test::Result result = runAndAwait(installed_, command);
  fs::remove_all(installed_.master());
  if (stands) {
    fs::rename(kept, installed_.master());
  }
  return result;
}
