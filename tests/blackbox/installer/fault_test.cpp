// Installations and updates, offline and online, in which one call fails, or at which the process
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

#include "tests/blackbox/installer/online.h"
#include "tests/blackbox/installer/starts.h"

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

std::vector<uint64_t> pointsOf(uint64_t count) {
  const char* wanted = getenv("QUORVANE_FAULT_POINTS");
  uint64_t most = wanted == nullptr ? 2 : strtoull(wanted, nullptr, 10);
  if (wanted != nullptr && strcmp(wanted, "all") == 0) {
    most = count;
  }
  std::vector<uint64_t> points;
  for (uint64_t i = 0; i < most && i < count; ++i) {
    points.push_back(most >= count ? i + 1 : 1 + i * count / most + count / most / 2);
  }
  return points;
}

// What is installed, and what the disturbed run installs over it.
class Disturbed : public testing::TestWithParam<Fault> {
 protected:
  virtual ~Disturbed() = default;

  // Checks that the next undisturbed run has brought what it should.
  virtual void expectNewVersion() = 0;

  // Keeps the state before the disturbed run.
  void keepState() {
    fs::create_directories(installer_.master());
    fs::rename(installer_.master(), installer_ / "before");
    older_ = namesOf(installer_ / "before");
  }

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

  // The number of calls of the kind in an undisturbed run.
  uint64_t countPoints() {
    reset();
    EXPECT_EQ(0, runWith(0).status);
    const std::string bytes = test::readFile(installer_ / "count");
    uint64_t count = 0;
    memcpy(&count, bytes.data(), sizeof count);
    return count;
  }

  void expectNothingBroken() {
    expectVersionFoldersStart(installer_);
    for (const std::string& name : older_) {
      EXPECT_TRUE(fs::exists(installer_.master(name))) << name << " is lost";
    }
  }

  void expectNextRunFinishes() {
    fs::remove(installer_.jvmReport());
    const test::Result next = installer_.run();
    EXPECT_EQ(0, next.status) << next.out;
    EXPECT_TRUE(installer_.launched()) << next.out;
    expectNewVersion();
    expectNothingBroken();
  }

  // Disturbs the run at each of the points, one after the other.
  void disturbAll() {
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
      expectNothingBroken();
      expectNextRunFinishes();
      if (HasFailure()) {
        FAIL() << disturbed.out << disturbed.err;
      }
    }
    printf("tried %zu points\n", points.size());
  }

  Installer installer_;

 private:
  static std::vector<std::string> namesOf(const std::string& folder) {
    std::vector<std::string> names;
    for (const std::string& name : test::namesIn(folder)) {
      // The folder of the same runtime is replaced, with a moment at which it is not there.
      if (name.find("-complete") != std::string::npos && name.find("-1407-") == std::string::npos) {
        names.push_back(name);
      }
    }
    return names;
  }

  std::vector<std::string> older_;
};

// An update from application 3 to application 4, all of it carried.
class Update : public Disturbed {
 protected:
  Update() {
    installer_.write();
    EXPECT_EQ(0, installer_.run().status);
    keepState();
    carryUpdate(&installer_);
    installer_.write();
  }

  void expectNewVersion() override {
    EXPECT_TRUE(fs::exists(installer_.master("Quorvane-Demo-4-complete")));
    EXPECT_TRUE(fs::exists(installer_.master("Quorvane-Quorvane-6-complete")));
  }
};

// A first installation, all of it carried.
class Fresh : public Disturbed {
 protected:
  Fresh() {
    installer_.write();
    keepState();
  }

  void expectNewVersion() override {
    EXPECT_TRUE(fs::exists(installer_.master("Quorvane-Demo-3-complete")));
    EXPECT_TRUE(fs::exists(installer_.master("Quorvane-Quorvane-5-complete")));
    EXPECT_TRUE(fs::exists(installer_.runtimeFolder()));
  }
};

// A first installation that downloads its runtime.
class OnlineFresh : public Disturbed {
 protected:
  OnlineFresh() {
    site_.publishGoodSite();
    installer_.makeOnline(site_.serve());
    installer_.write();
    keepState();
  }

  void expectNewVersion() override {
    EXPECT_TRUE(fs::exists(installer_.master("Quorvane-Quorvane-5-complete")));
    EXPECT_TRUE(fs::exists(installer_.master("Quorvane-Mac64JRE-1500-complete")));
  }

  UpdateSite site_;
};

// An update of the updater, over an older one with an older runtime, that downloads a new runtime.
class OnlineUpdate : public OnlineFresh {
 protected:
  OnlineUpdate() {
    fs::remove_all(installer_ / "before");
    installer_.installUpdater("4");
    installer_.installRuntime("1400");
    installer_.installApplication("2");
    keepState();
  }

  // Once the updater stands, any runtime will do.
  void expectNewVersion() override {
    EXPECT_TRUE(fs::exists(installer_.master("Quorvane-Quorvane-5-complete")));
  }
};

}  // namespace

TEST_P(Update, DisturbedAtAnyCallLeavesNothingBrokenAndIsFinishedByTheNextRun) {
  disturbAll();
}
TEST_P(Fresh, DisturbedAtAnyCallLeavesNothingBrokenAndIsFinishedByTheNextRun) {
  disturbAll();
}
TEST_P(OnlineFresh, DisturbedAtAnyCallLeavesNothingBrokenAndIsFinishedByTheNextRun) {
  disturbAll();
}
TEST_P(OnlineUpdate, DisturbedAtAnyCallLeavesNothingBrokenAndIsFinishedByTheNextRun) {
  disturbAll();
}

static std::string nameOf(const testing::TestParamInfo<Fault>& info) {
  return info.param.name;
}

INSTANTIATE_TEST_SUITE_P(Of, Update, testing::ValuesIn(kFaults), nameOf);
INSTANTIATE_TEST_SUITE_P(Of, Fresh, testing::ValuesIn(kFaults), nameOf);
INSTANTIATE_TEST_SUITE_P(Of, OnlineFresh, testing::ValuesIn(kFaults), nameOf);
INSTANTIATE_TEST_SUITE_P(Of, OnlineUpdate, testing::ValuesIn(kFaults), nameOf);
