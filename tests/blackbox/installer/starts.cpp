#include "tests/blackbox/installer/starts.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>

#include "tests/support/files.h"
#include "tests/support/product_system.h"

namespace fs = std::filesystem;
using test::Installer;

void carryUpdate(Installer* installer) {
  installer->tail.guVersion = "6";
  installer->tail.appVersion = "4";
  installer->application[0] = test::nestedRecord("application", Installer::applicationRecords("4"));
}

static bool endsIn(const std::string& text, const std::string& end) {
  return text.size() >= end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

static bool holds(const std::string& file, const std::string& bytes) {
  return test::exists(file) && test::readFile(file) == bytes;
}

static void expectUpdaterStarts(const std::string& folder) {
  EXPECT_TRUE(holds(folder + "/QuorvaneLaunch", Installer::updaterLaunchFile())) << folder;
  // As carried, or as Installer::installUpdater() writes it.
  const std::string jar = test::readFile(folder + "/updater.jar");
  EXPECT_TRUE(jar == "the updater" || jar.rfind("updater ", 0) == 0) << folder << jar;
}

static void expectApplicationStarts(const std::string& folder, const std::string& version) {
  EXPECT_TRUE(holds(folder + "/QuorvaneLaunch", Installer::applicationLaunchFile())) << folder;
  EXPECT_EQ("application " + version, test::readFile(folder + "/demo.jar")) << folder;
}

static void expectJava(const std::string& file) {
  EXPECT_TRUE(holds(file, test::readFile(QUORVANE_BIN "/fake_java"))) << file;
  EXPECT_EQ(0, access(file.c_str(), X_OK)) << file;
}

static void expectRuntimeStarts(const std::string& folder) {
  expectJava(folder + "/bin/java");
  // The copy under the application's name, from which a launch starts a process.
  if (fs::exists(folder + "/bin/Demo")) {
    expectJava(folder + "/bin/Demo");
  }
  EXPECT_TRUE(holds(folder + "/" + test::jvmLibraryPlace(), test::readFile(QUORVANE_FAKE_JVM)))
      << folder;
  EXPECT_TRUE(holds(folder + "/release", Installer::runtimeRelease())) << folder;
}

void expectVersionFoldersStart(const Installer& installer, const std::string& damaged) {
  const std::string kApplication = "Quorvane-Demo-";
  const std::string kBundle = ".plugin";
  for (const std::string& name : installer.versionFolders()) {
    const std::string folder = installer.master(name);
    if (name == damaged && holds(folder + "/QuorvaneLaunch", "")) {
      continue;
    }
    if (endsIn(name, kBundle)) {
      // A bundle whose home was not moved yet is finished by the next run.
      if (!fs::exists(folder.substr(0, folder.size() - kBundle.size()))) {
        expectRuntimeStarts(folder + "/Contents/Home");
      }
    } else if (name.rfind("Quorvane-Mac64JRE-", 0) == 0) {
      expectRuntimeStarts(folder);
    } else if (name.rfind("Quorvane-Quorvane-", 0) == 0) {
      expectUpdaterStarts(folder);
    } else {
      expectApplicationStarts(
          folder, name.substr(kApplication.size(), name.rfind('-') - kApplication.size()));
    }
  }
}

void expectBundlesHaveExecutables(const Installer& installer) {
  for (const std::string& name : installer.versionFolders()) {
    const fs::path folder = installer.master(name + "/Contents/MacOS");
    if (fs::exists(folder)) {
      EXPECT_TRUE(fs::is_symlink(folder / "JavaAppletPlugin")) << folder;
    }
  }
}

std::map<std::string, std::string> withClock(const Installer& installer,
                                             const std::string& startAndStep) {
  return {{"QUORVANE_CLOCK", startAndStep},
          {"LD_PRELOAD",
           std::string(QUORVANE_JUMPING_CLOCK) + ":" + installer.home.environment()["LD_PRELOAD"]}};
}
