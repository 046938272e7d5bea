#include "tests/blackbox/installer/starts.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>

#include "tests/support/files.h"

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

static void expectUpdaterStarts(const std::string& folder) {
  EXPECT_TRUE(fs::exists(folder + "/QuorvaneLaunch")) << folder;
  // As carried, or as Installer::installUpdater() writes it.
  const std::string jar = test::readFile(folder + "/updater.jar");
  EXPECT_TRUE(jar == "the updater" || jar.rfind("updater ", 0) == 0) << folder << jar;
}

static void expectApplicationStarts(const std::string& folder, const std::string& version) {
  EXPECT_TRUE(fs::exists(folder + "/QuorvaneLaunch")) << folder;
  EXPECT_EQ("application " + version, test::readFile(folder + "/demo.jar")) << folder;
}

static void expectRuntimeStarts(const std::string& folder) {
  EXPECT_EQ(test::readFile(QUORVANE_BIN "/fake_java"), test::readFile(folder + "/bin/java"))
      << folder;
  EXPECT_EQ(0, access((folder + "/bin/java").c_str(), X_OK)) << folder;
  EXPECT_EQ(test::readFile(QUORVANE_FAKE_JVM), test::readFile(folder + "/lib/server/libjvm.so"))
      << folder;
}

void expectVersionFoldersStart(const Installer& installer) {
  const std::string kApplication = "Quorvane-Demo-";
  const std::string kBundle = ".plugin";
  for (const std::string& name : installer.versionFolders()) {
    const std::string folder = installer.master(name);
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

std::map<std::string, std::string> withClock(const Installer& installer,
                                             const std::string& startAndStep) {
  return {{"QUORVANE_CLOCK", startAndStep},
          {"LD_PRELOAD",
           std::string(QUORVANE_JUMPING_CLOCK) + ":" + installer.home.environment()["LD_PRELOAD"]}};
}
