#include "tests/blackbox/installer/disturbed.h"

#include <signal.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>

#include "support/process/exit_status.h"
#include "tests/blackbox/installer/starts.h"
#include "tests/support/files.h"

namespace fs = std::filesystem;

std::ostream& operator<<(std::ostream& out, const Fault& fault) {
  return out << fault.name;
}

static std::vector<uint64_t> pointsOf(uint64_t count) {
  const char* wanted = getenv("QUORVANE_FAULT_POINTS");
  uint64_t most = wanted == nullptr ? 1 : strtoull(wanted, nullptr, 10);
  if (wanted != nullptr && strcmp(wanted, "all") == 0) {
    most = count;
  }
  std::vector<uint64_t> points;
  for (uint64_t i = 0; i < most && i < count; ++i) {
    points.push_back(most >= count ? i + 1 : 1 + i * count / most + count / most / 2);
  }
  return points;
}

// What an application keeps beside its jar, in each folder that an installation may replace.
void Disturbed::addFilesOfTheUser() const {
  for (const std::string& name : scene_.kept) {
    const std::string folder = installer_.master(name);
    test::writeFile(folder + "/user-settings.ini", "settings in " + name, 0640);
    test::writeFile(folder + "/.user/history", "history in " + name, 0600);
    fs::create_directories(folder + "/user/empty");
    fs::create_symlink("../user-settings.ini", folder + "/user/link");
  }
}

void Disturbed::expectFilesOfTheUser() const {
  for (const std::string& name : scene_.kept) {
    const std::string folder = installer_.master(name);
    EXPECT_TRUE(fs::exists(folder)) << name << " is lost";
    const auto expectFile = [&](const std::string& file, const std::string& bytes, unsigned mode) {
      ASSERT_TRUE(fs::exists(folder + file)) << name << file << " is lost";
      EXPECT_EQ(bytes + name, test::readFile(folder + file));
      EXPECT_EQ(mode, test::modeOf(folder + file)) << name << file;
    };
    expectFile("/user-settings.ini", "settings in ", 0640);
    expectFile("/.user/history", "history in ", 0600);
    EXPECT_TRUE(fs::is_directory(folder + "/user/empty")) << name;
    EXPECT_TRUE(fs::is_symlink(folder + "/user/link")) << name;
  }
}

void Disturbed::keepState(const Scene& scene) {
  scene_ = scene;
  fs::remove_all(installer_ / "before");
  fs::create_directories(installer_.master());
  addFilesOfTheUser();
  fs::rename(installer_.master(), installer_ / "before");
}

void Disturbed::reset() {
  fs::remove_all(installer_.master());
  fs::copy(installer_ / "before", installer_.master(),
           fs::copy_options::recursive | fs::copy_options::copy_symlinks);
}

test::Result Disturbed::runWith(uint64_t point) {
  fs::remove(installer_ / "count");
  test::Command command = installer_.command(scene_.words);
  command.environment["QUORVANE_FAULT"] =
      std::string(GetParam().kind) + ":" + std::to_string(point) + ":" + GetParam().action;
  command.environment["QUORVANE_FAULT_COUNT"] = installer_ / "count";
  command.environment["LD_PRELOAD"] =
      std::string(QUORVANE_FAULT_INJECTOR) + ":" + command.environment["LD_PRELOAD"];
  return test::run(command);
}

Disturbed::Counts Disturbed::readCounts() const {
  const std::string bytes = test::readFile(installer_ / "count");
  Counts counts;
  if (bytes.size() == sizeof counts) {
    memcpy(&counts, bytes.data(), sizeof counts);
  }
  return counts;
}

// The number of calls of the kind in an undisturbed run.
uint64_t Disturbed::countPoints() {
  reset();
  EXPECT_EQ(0, runWith(0).status);
  EXPECT_EQ(0u, readCounts().hit);
  return readCounts().met;
}

bool Disturbed::isInstalled(const std::string& start) const {
  const std::vector<std::string> names = installer_.versionFolders();
  return std::any_of(names.begin(), names.end(),
                     [&start](const std::string& name) { return name.rfind(start, 0) == 0; });
}

void Disturbed::expectNothingBroken(const std::string& damaged) {
  expectVersionFoldersStart(installer_, damaged);
  expectFilesOfTheUser();
}

// Starts what counts as installed, with nothing new at hand.
void Disturbed::expectInstalledStarts() {
  const bool isNew = fs::exists(installer_.master(scene_.newUpdater));
  const std::string updater = isNew ? scene_.newUpdater : scene_.oldUpdater;
  const bool starts = !updater.empty() && isInstalled("Quorvane-Mac64JRE-");
  EXPECT_TRUE(starts || scene_.oldUpdater.empty());
  const test::Result result = LauncherOnly(installer_).run();
  EXPECT_EQ(starts ? 0 : 1, result.status) << result.out;
  const Started started = startedBy(installer_, result);
  EXPECT_EQ(starts ? updater : "", started.updater) << result.out;
  EXPECT_EQ(starts, !started.runtime.empty()) << result.out;
}

// The disturbed request may have been met already.
void Disturbed::repeatRequest() {
  const test::Result result = test::run(installer_.command(scene_.words));
  EXPECT_TRUE(result.status == 0 || result.status == EXIT_STATUS_NOT_NEWER)
      << result.status << result.out;
  EXPECT_TRUE(installer_.tempFolders().empty());
}

void Disturbed::expectNextRunFinishes() {
  if (!scene_.words.empty()) {
    repeatRequest();
  }
  // Once the new updater stands, any runtime will do.
  const bool isHalfNew = fs::exists(installer_.master(scene_.newUpdater));
  const test::Result next = runAndAwait(installer_, installer_.command());
  EXPECT_EQ(0, next.status) << next.out;
  const Started started = startedBy(installer_, next);
  EXPECT_EQ(scene_.newUpdater, started.updater) << next.out;
  if (isHalfNew && !scene_.oldRuntime.empty() && started.runtime == scene_.oldRuntime) {
    ++withOldRuntime_;
  } else {
    EXPECT_EQ(scene_.newRuntime, started.runtime) << next.out;
  }
  for (const std::string& name : scene_.made) {
    EXPECT_TRUE(fs::exists(installer_.master(name))) << name << " is missing";
  }
  expectBundlesHaveExecutables(installer_);
  expectNothingBroken();
}

void Disturbed::disturbAt(uint64_t point) {
  SCOPED_TRACE(std::string(GetParam().name) + " at call " + std::to_string(point));
  reset();
  const test::Result disturbed = runWith(point);
  EXPECT_FALSE(disturbed.timedOut);
  EXPECT_GE(readCounts().hit, 1u) << "the call was never made";
  if (strcmp(GetParam().action, "kill") == 0) {
    EXPECT_EQ(SIGKILL, disturbed.signal);
  }
  expectNothingBroken(scene_.damaged);
  expectInstalledStarts();
  expectNextRunFinishes();
  if (HasFailure()) {
    FAIL() << "the disturbed run:\n" << disturbed.out << disturbed.err;
  }
}

void Disturbed::disturbAll() {
  const uint64_t count = countPoints();
  const std::vector<uint64_t> points = pointsOf(count);
  EXPECT_FALSE(points.empty());
  for (size_t i = 0; i < points.size() && !HasFailure(); ++i) {
    disturbAt(points[i]);
  }
  printf("tried %zu of %llu points", points.size(), static_cast<unsigned long long>(count));
  if (!scene_.oldRuntime.empty()) {
    printf(", after %llu the older runtime is used",
           static_cast<unsigned long long>(withOldRuntime_));
  }
  printf("\n");
}
