// An update from application 3 to application 4 in which one call fails, or at which the process
// dies. Whatever the call is: no version folder is left that cannot be started, what was installed
// before still starts, and the next undisturbed run ends with the new version running.
//
// QUORVANE_FAULT_POINTS is the number of points to try of each kind, spread over all of them; "all"
// tries each one.

#include <gtest/gtest.h>
#include <signal.h>

#include <cstdio>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

#include "tests/installer/installer.h"
#include "tests/support/files.h"

namespace fs = std::filesystem;
using test::Installer;

namespace {

struct Fault {
  const char* name;
  const char* kind;
  const char* action;
};

const Fault kFaults[] = {
    {"OpenFails", "open", "13"},     {"OpenDies", "open", "kill"},
    {"WriteFails", "write", "28"},   {"WriteDies", "write", "kill"},
    {"RenameFails", "rename", "5"},  {"RenameDies", "rename", "kill"},
    {"MkdirFails", "mkdir", "28"},   {"MkdirDies", "mkdir", "kill"},
    {"ChmodFails", "chmod", "1"},    {"ChmodDies", "chmod", "kill"},
    {"ReadFails", "read", "5"},      {"ReadDies", "read", "kill"},
    {"SpawnFails", "spawn", "11"},   {"SpawnDies", "spawn", "kill"},
    {"MallocFails", "malloc", "12"}, {"MallocDies", "malloc", "kill"},
};

std::ostream& operator<<(std::ostream& out, const Fault& fault) {
  return out << fault.name;
}

class Update : public testing::TestWithParam<Fault> {
 protected:
  Update() {
    installer_.write();
    EXPECT_EQ(0, installer_.run().status);
    fs::rename(installer_.master(), installer_ / "before");
    installer_.tail.guVersion = "6";
    installer_.tail.appVersion = "4";
    installer_.application[0] =
        test::nestedRecord("application", Installer::applicationRecords("4"));
    installer_.write();
  }

  // Sets the master folder back to the state before the update.
  void reset() {
    fs::remove_all(installer_.master());
    fs::copy(installer_ / "before", installer_.master(),
             fs::copy_options::recursive | fs::copy_options::copy_symlinks);
    fs::remove(installer_.jvmReport());
  }

  test::Result runWith(uint64_t point) {
    fs::remove(installer_ / "count");
    std::map<std::string, std::string> environment = {
        {"QUORVANE_FAULT",
         std::string(GetParam().kind) + ":" + std::to_string(point) + ":" + GetParam().action},
        {"QUORVANE_FAULT_COUNT", installer_ / "count"}};
    environment["LD_PRELOAD"] =
        std::string(QUORVANE_FAULT_INJECTOR) + ":" + installer_.home.environment()["LD_PRELOAD"];
    return installer_.run({}, environment);
  }

  // The number of calls of the kind in an undisturbed update.
  uint64_t countPoints() {
    reset();
    EXPECT_EQ(0, runWith(0).status);
    const std::string bytes = test::readFile(installer_ / "count");
    uint64_t count = 0;
    memcpy(&count, bytes.data(), sizeof count);
    return count;
  }

  void expectUpdaterStarts(const std::string& folder) {
    EXPECT_TRUE(fs::exists(folder + "/QuorvaneLaunch")) << folder;
    EXPECT_EQ("the updater", test::readFile(folder + "/updater.jar"));
  }

  void expectApplicationStarts(const std::string& folder, const std::string& version) {
    EXPECT_TRUE(fs::exists(folder + "/QuorvaneLaunch")) << folder;
    EXPECT_EQ("application " + version, test::readFile(folder + "/demo.jar"));
  }

  void expectRuntimeStarts(const std::string& folder) {
    EXPECT_TRUE(fs::exists(folder + "/bin/java")) << folder;
    EXPECT_TRUE(fs::exists(folder + "/lib/server/libjvm.so")) << folder;
  }

  // Every folder that counts as complete can be started.
  void expectVersionFoldersStart() {
    for (const std::string& name : installer_.versionFolders()) {
      const std::string folder = installer_.master(name);
      if (name == "Quorvane-Mac64JRE-1407-complete.plugin") {
        if (!fs::exists(installer_.runtimeFolder())) {
          expectRuntimeStarts(folder + "/Contents/Home");
        }
      } else if (name == "Quorvane-Mac64JRE-1407-complete") {
        expectRuntimeStarts(folder);
      } else if (name.rfind("Quorvane-Quorvane-", 0) == 0) {
        expectUpdaterStarts(folder);
      } else {
        expectApplicationStarts(folder, name.substr(strlen("Quorvane-Demo-"), 1));
      }
    }
    EXPECT_TRUE(fs::exists(installer_.master("Quorvane-Demo-3-complete")));
  }

  void expectNextRunFinishes() {
    fs::remove(installer_.jvmReport());
    const test::Result next = installer_.run();
    EXPECT_EQ(0, next.status) << next.out;
    EXPECT_TRUE(installer_.launched()) << next.out;
    expectApplicationStarts(installer_.master("Quorvane-Demo-4-complete"), "4");
    expectUpdaterStarts(installer_.master("Quorvane-Quorvane-6-complete"));
    expectVersionFoldersStart();
  }

  Installer installer_;
};

std::vector<uint64_t> pointsOf(uint64_t count) {
  const char* wanted = getenv("QUORVANE_FAULT_POINTS");
  uint64_t most = wanted == nullptr ? 4 : strtoull(wanted, nullptr, 10);
  if (wanted != nullptr && strcmp(wanted, "all") == 0) {
    most = count;
  }
  std::vector<uint64_t> points;
  for (uint64_t i = 0; i < most && i < count; ++i) {
    points.push_back(most >= count ? i + 1 : 1 + i * count / most + count / most / 2);
  }
  return points;
}

}  // namespace

TEST_P(Update, DisturbedAtAnyCallLeavesNothingBrokenAndIsFinishedByTheNextRun) {
  const std::vector<uint64_t> points = pointsOf(countPoints());
  EXPECT_FALSE(points.empty());
  for (const uint64_t point : points) {
    SCOPED_TRACE(std::string(GetParam().name) + " at call " + std::to_string(point));
    reset();
    const test::Result disturbed = runWith(point);
    EXPECT_FALSE(disturbed.timedOut) << disturbed.out;
    if (strcmp(GetParam().action, "kill") == 0) {
      EXPECT_EQ(SIGKILL, disturbed.signal);
    }
    expectVersionFoldersStart();
    expectNextRunFinishes();
    if (HasFailure()) {
      FAIL() << disturbed.out << disturbed.err;
    }
  }
  RecordProperty("points", static_cast<int>(points.size()));
  printf("tried %zu points\n", points.size());
}

INSTANTIATE_TEST_SUITE_P(Of, Update, testing::ValuesIn(kFaults),
                         [](const auto& info) { return std::string(info.param.name); });
