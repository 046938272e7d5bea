// Damaged installations: an installer reinstalls what definitely cannot start, and one that carries
// nothing starts the next lower version. What only the damaged folder held is kept.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <functional>
#include <ostream>
#include <string>
#include <thread>
#include <vector>

#include "tests/blackbox/installer/current_installation.h"
#include "tests/blackbox/installer/online.h"
#include "tests/support/product_system.h"

namespace fs = std::filesystem;
using test::fileRecord;
using test::Installer;
using test::nestedRecord;

namespace {

const char kUpdater[] = "Quorvane-Quorvane-5-complete";
const char kRuntime[] = "Quorvane-Mac64JRE-1407-complete";
const char kApp[] = "Quorvane-Demo-3-complete";
const char kWithoutExtraction[] = "[Extractor] Running without extraction now";

const char kNoLaunchFile[] = "its launch file is missing";
const char kCutLaunchFile[] = "its launch file is cut short or damaged";
const char kNoLibrary[] = "its JVM library is missing or empty";
const char kNoModules[] = "its modules file is missing or empty";
const char kNoFolder[] = "it is no folder";
const char kEmptyFolder[] = "it is empty";

std::string refusal(const std::string& folder, const std::string& flaw) {
  return "[PickFolder] Folder " + folder + " cannot start: " + flaw;
}

// The runtime with what shows that one has its classes in a modules file.
std::string recordsWithModules() {
  return Installer::runtimeRecords() + fileRecord("Contents/Home/lib/modules", "the modules") +
         fileRecord("Contents/Home/lib/jrt-fs.jar", "reads the modules");
}

void cut(const std::string& file, size_t length) {
  const std::string bytes = test::readFile(file);
  ASSERT_GT(bytes.size(), length) << file;
  test::writeFile(file, bytes.substr(0, length));
}

void replaceByFile(const std::string& path) {
  fs::remove_all(path);
  test::writeFile(path, "no folder");
}

void replaceByEmptyFolder(const std::string& path) {
  fs::remove_all(path);
  fs::create_directories(path);
}

class Repair : public testing::Test {
 protected:
  Repair() {
    installer_.runtime = nestedRecord("runtime", recordsWithModules());
    EXPECT_EQ(0, start().status);
  }

  // Runs the installer; `launched()` then speaks of this run.
  test::Result start() {
    fs::remove(installer_.jvmReport());
    installer_.write();
    return installer_.run();
  }

  std::string updater(const std::string& file) const {
    return installer_.master(std::string(kUpdater) + "/" + file);
  }
  std::string runtime(const std::string& file) const {
    return installer_.runtimeFolder() + "/" + file;
  }

  void expectLaunch(const test::Result& result) {
    EXPECT_EQ(0, result.status) << result.out;
    EXPECT_TRUE(installer_.launched()) << result.out;
  }

  // The folder is refused for its flaw, what the installer carries is installed and started, and
  // the next run has nothing to do.
  void expectRepair(const std::string& folder, const std::string& flaw) {
    const test::Result result = start();
    expectLaunch(result);
    EXPECT_TRUE(logs(result, refusal(folder, flaw))) << result.out;
    EXPECT_TRUE(mentions(result, "[Extractor] Extracted GU and GU Version")) << result.out;
    EXPECT_TRUE(installer_.tempFolders().empty());
    expectLaunchWithoutExtraction();
  }

  void expectLaunchWithoutExtraction() {
    const test::Result result = start();
    expectLaunch(result);
    EXPECT_TRUE(logs(result, kWithoutExtraction)) << result.out;
  }

  // An installer that carries nothing.
  void carryNothing() {
    installer_.makeOnline("http://192.0.2.10/");
    installer_.tail.guVersion.clear();
    installer_.updater.clear();
  }

  Installer installer_;
};

// A way to damage an installation of everything.
struct Damage {
  const char* name;
  const char* folder;                             // which of the version folders
  std::function<void(const std::string&)> apply;  // to that folder's path
  const char* flaw;
};

std::ostream& operator<<(std::ostream& out, const Damage& damage) {
  return out << damage.name;
}

void cutLaunchFileTo(const std::string& folder, const std::string& lastField) {
  const std::string file = folder + "/QuorvaneLaunch";
  cut(file, test::readFile(file).find(lastField) + lastField.size());
}

std::string libraryIn(const std::string& folder) {
  return folder + "/" + test::jvmLibraryPlace();
}

// Two of each component. launch_test and launcher_test have every flaw.
const Damage kDamages[] = {
    {"LaunchFileMissing", kUpdater,
     [](const std::string& folder) { fs::remove(folder + "/QuorvaneLaunch"); }, kNoLaunchFile},
    {"LaunchFileCutInItsClassPath", kUpdater,
     [](const std::string& folder) { cutLaunchFileTo(folder, "updater.j"); }, kCutLaunchFile},
    {"JvmLibraryMissing", kRuntime,
     [](const std::string& folder) { fs::remove(libraryIn(folder)); }, kNoLibrary},
    {"ModulesMissing", kRuntime,
     [](const std::string& folder) { fs::remove(folder + "/lib/modules"); }, kNoModules},
};

class DamagedFolder : public Repair, public testing::WithParamInterface<Damage> {};

// What stands at a version folder's name without being one.
class NoVersionFolder : public Repair, public testing::WithParamInterface<const char*> {};

// The lines of the decision, from the search for what is installed to its end.
std::vector<std::string> decisionIn(const test::Result& result) {
  const std::vector<std::string> lines = test::logLinesOf(result.out);
  const auto begin =
      std::find(lines.begin(), lines.end(), "[Extractor] Checking for a latest valid GU");
  const auto end = std::find(begin, lines.end(), kWithoutExtraction);
  return {begin, end};
}

// The lines that lead to the choice of the runtime for the launch.
std::vector<std::string> pickingLines(const std::string& component, const std::string& version) {
  const std::string name = "Quorvane-" + component + "-" + version + "-complete";
  return {"[PickFolder] Folder " + name + " matches " + component + " with version " + version,
          "[PickFolder] Set latest to " + version + " " + name};
}

std::string highest(const char* folder) {
  const std::string name = folder;
  const size_t version = name.find('-', name.find('-') + 1) + 1;
  return name.substr(0, version) + "9999-complete";
}

}  // namespace

TEST_P(DamagedFolder, IsRepairedByTheInstallerThatCarriesItAndKeepsTheUsersFiles) {
  const std::string folder = installer_.master(GetParam().folder);
  test::writeFile(folder + "/user-settings.ini", "of the user's");
  test::writeFile(folder + "/.user/history", "of the user's");
  GetParam().apply(folder);
  expectRepair(GetParam().folder, GetParam().flaw);
  EXPECT_EQ(Installer::updaterLaunchFile(), test::readFile(updater("QuorvaneLaunch")));
  EXPECT_EQ("the modules", test::readFile(runtime("lib/modules")));
  EXPECT_EQ("of the user's", test::readFile(folder + "/user-settings.ini"));
  EXPECT_EQ("of the user's", test::readFile(folder + "/.user/history"));
}

TEST_P(DamagedFolder, GivesWayToTheNextLowerVersionWhereNothingIsCarried) {
  installer_.installUpdater("4");
  installer_.installRuntime("1300");
  GetParam().apply(installer_.master(GetParam().folder));
  carryNothing();
  const test::Result result = start();
  expectLaunch(result);
  EXPECT_TRUE(logs(result, refusal(GetParam().folder, GetParam().flaw))) << result.out;
  const bool isRuntime = std::string(kRuntime) == GetParam().folder;
  EXPECT_TRUE(mentions(result, isRuntime
                                   ? "Latest GU version exists: Quorvane-Quorvane-5-complete"
                                   : "Latest GU version exists: Quorvane-Quorvane-4-complete"));
  EXPECT_TRUE(logs(result, isRuntime
                               ? "[Extractor] Using private JRE Quorvane-Mac64JRE-1300-complete"
                               : std::string("[Extractor] Using private JRE ") + kRuntime));
}

INSTANTIATE_TEST_SUITE_P(With, DamagedFolder, testing::ValuesIn(kDamages),
                         [](const auto& info) { return std::string(info.param.name); });

TEST_P(NoVersionFolder, ThatIsAFileOfAHigherVersionHidesNothing) {
  const std::string name = highest(GetParam());
  test::writeFile(installer_.master(name), "no folder");
  const test::Result result = start();
  expectLaunch(result);
  EXPECT_TRUE(logs(result, refusal(name, kNoFolder))) << result.out;
  EXPECT_TRUE(logs(result, kWithoutExtraction)) << result.out;
  EXPECT_EQ("no folder", test::readFile(installer_.master(name)));
}

TEST_P(NoVersionFolder, ThatIsAnEmptyFolderOfAHigherVersionHidesNothing) {
  const std::string name = highest(GetParam());
  fs::create_directories(installer_.master(name));
  const test::Result result = start();
  expectLaunch(result);
  EXPECT_TRUE(mentions(result, "[PickFolder] Folder " + name + " cannot start: ")) << result.out;
  EXPECT_TRUE(logs(result, kWithoutExtraction)) << result.out;
}

TEST_P(NoVersionFolder, OfAHigherVersionHidesNothingThatIsInstalledInTheSameRun) {
  fs::create_directories(installer_.master(highest(GetParam())));
  fs::remove_all(installer_.master(kUpdater));
  fs::remove_all(installer_.master(kRuntime));
  fs::remove_all(installer_.master(std::string(kRuntime) + ".plugin"));
  fs::remove_all(installer_.master(kApp));
  const test::Result result = start();
  expectLaunch(result);
  EXPECT_TRUE(logs(result, "[Extractor] Will now run latest GU Quorvane-Quorvane-5-complete"));
  EXPECT_TRUE(logs(result, std::string("[Extractor] Using private JRE ") + kRuntime));
  EXPECT_TRUE(fs::exists(installer_.master(std::string(kApp) + "/demo.jar")));
  expectLaunchWithoutExtraction();
}

TEST_P(NoVersionFolder, ThatIsAFileGivesWayToTheFolder) {
  replaceByFile(installer_.master(GetParam()));
  expectRepair(GetParam(), kNoFolder);
  EXPECT_TRUE(fs::is_directory(installer_.master(GetParam())));
}

TEST_P(NoVersionFolder, ThatIsAnEmptyFolderIsFilled) {
  replaceByEmptyFolder(installer_.master(GetParam()));
  const std::string flaw = std::string(kUpdater) == GetParam()   ? kNoLaunchFile
                           : std::string(kRuntime) == GetParam() ? kNoLibrary
                                                                 : kEmptyFolder;
  expectRepair(GetParam(), flaw);
  EXPECT_FALSE(fs::is_empty(installer_.master(GetParam())));
}

INSTANTIATE_TEST_SUITE_P(Of, NoVersionFolder, testing::Values(kUpdater, kRuntime, kApp),
                         [](const auto& info) {
                           return std::string(info.param == kUpdater   ? "TheUpdater"
                                              : info.param == kRuntime ? "TheRuntime"
                                                                       : "TheApplication");
                         });

TEST_F(Repair, OfARuntimeThatIsNotCarriedDownloadsOne) {
  UpdateSite site;
  site.publishVersion("1407\n");
  site.publishArchive(test::compressed(recordsWithModules()), "1407");
  installer_.makeOnline(site.serve());
  cut(runtime("lib/modules"), 0);
  test::writeFile(runtime("user-settings.ini"), "of the user's");
  expectRepair(kRuntime, kNoModules);
  EXPECT_EQ("the modules", test::readFile(runtime("lib/modules")));
  EXPECT_EQ("of the user's", test::readFile(runtime("user-settings.ini")));
}

TEST_F(Repair, ByAnInstallerOfALowerVersionLeadsToThatVersion) {
  installer_.installUpdater("9");
  fs::remove(installer_.master("Quorvane-Quorvane-9-complete/QuorvaneLaunch"));
  fs::remove_all(installer_.master(kUpdater));
  expectRepair("Quorvane-Quorvane-9-complete", kNoLaunchFile);
  EXPECT_TRUE(fs::exists(updater("QuorvaneLaunch")));
}

TEST_F(Repair, WhereNothingIsCarriedAndNothingCanStartTriesTheNewest) {
  fs::remove(updater("QuorvaneLaunch"));
  carryNothing();
  const test::Result result = start();
  EXPECT_EQ(1, result.status);
  EXPECT_TRUE(logs(result, refusal(kUpdater, kNoLaunchFile))) << result.out;
  EXPECT_TRUE(mentions(result, "Unable to open launch file " + updater("QuorvaneLaunch")));
}

TEST_F(Repair, IsNotMadeOfARuntimeOfAnEarlierLayout) {
  fs::remove(runtime("lib/modules"));
  fs::remove(runtime("lib/jrt-fs.jar"));
  test::writeFile(runtime("lib/rt.jar"), "the classes");
  expectLaunchWithoutExtraction();
}

TEST_F(Repair, IsNotMadeOfARuntimeThatOnlyItsJavaCanStart) {
  fs::create_directories(runtime("lib/client"));
  const std::string library = fs::path(test::jvmLibraryPlace()).filename();
  fs::rename(libraryIn(installer_.runtimeFolder()), runtime("lib/client/" + library));
  installer_.properties = {{"force_spawn", "true"}};
  const test::Result result = start();
  EXPECT_EQ(0, result.status) << result.out;
  EXPECT_TRUE(logs(result, kWithoutExtraction)) << result.out;
}

TEST_F(Repair, IsNotMadeOfALaunchFileThatEndsBehindWhatALaunchReads) {
  cutLaunchFileTo(installer_.master(kUpdater), "updater.jar" + std::string("\0000\0", 3));
  expectLaunchWithoutExtraction();
}

TEST_F(Repair, OfAHealthyInstallationIsNoPartOfTheLog) {
  std::vector<std::string> expected = {"[Extractor] Checking for a latest valid GU"};
  const auto add = [&expected](const std::vector<std::string>& lines) {
    expected.insert(expected.end(), lines.begin(), lines.end());
  };
  add(pickingLines("Quorvane", "5"));
  add(pickingLines("Mac64JRE", "1407"));
  add({std::string("[PickFolder] Folder ") + kRuntime +
       ".plugin matches Mac64JRE with version 1407"});
  add({std::string("[Extractor] Latest GU version exists: ") + kUpdater,
       std::string("[Extractor] Existing JRE exists: ") + kRuntime,
       "[Extractor] Latest GUversion is newer or same as our version so will just run"});
  add(pickingLines("Demo", "3"));
  add({"[Extractor] Latest App version is newer or same as our version so will just run"});
  const test::Result result = start();
  EXPECT_EQ(expected, decisionIn(result));
  EXPECT_FALSE(mentions(result, "cannot start")) << result.out;
}

TEST_F(Repair, ByTwoInstallersAtOnceIsMadeOnce) {
  cut(runtime("lib/modules"), 0);
  installer_.write();
  std::vector<test::Result> results(2);
  std::vector<std::thread> threads;
  threads.reserve(results.size());
  for (test::Result& result : results) {
    threads.emplace_back([this, &result] { result = installer_.run(); });
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
  int extractions = 0;
  for (const test::Result& result : results) {
    EXPECT_EQ(0, result.status) << result.out;
    EXPECT_TRUE(mentions(result, "[JNILauncher] Done!")) << result.out;
    extractions += mentions(result, "[Extractor] Extracted GU and GU Version") ? 1 : 0;
  }
  EXPECT_EQ(1, extractions);
  EXPECT_EQ("the modules", test::readFile(runtime("lib/modules")));
}
