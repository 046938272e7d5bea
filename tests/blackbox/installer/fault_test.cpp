// Installations and updates, offline and online, in which one call fails, or all from one on, or at
// which the process dies. Whatever the call is: no version folder is left that cannot be started,
// what counts as installed really starts, and the next undisturbed run ends with the new version
// running.
//
// QUORVANE_FAULT_POINTS is the number of points to try of each kind, spread over all of them; "all"
// tries each one.

#include <filesystem>
#include <string>

#include "tests/blackbox/installer/disturbed.h"
#include "tests/blackbox/installer/online.h"
#include "tests/blackbox/installer/starts.h"
#include "tests/installer/records.h"
#include "tests/support/product_system.h"

namespace fs = std::filesystem;

namespace {

const Fault kFaults[] = {
    {"OpenFails", "open", "13"},
    {"OpenKeepsFailing", "open", "24+"},
    {"OpenDies", "open", "kill"},
    {"ScanFails", "scan", "5"},
    {"ScanDies", "scan", "kill"},
    {"ReadFails", "read", "5"},
    {"ReadKeepsFailing", "read", "5+"},
    {"ReadDies", "read", "kill"},
    {"WriteFails", "write", "28"},
    {"WriteKeepsFailing", "write", "28+"},
    {"WriteDies", "write", "kill"},
    {"LogFails", "log", "28"},
    {"LogKeepsFailing", "log", "28+"},
    {"LogDies", "log", "kill"},
    {"CloseFails", "close", "5"},
    {"CloseDies", "close", "kill"},
    {"RenameFails", "rename", "5"},
    {"RenameKeepsFailing", "rename", "5+"},
    {"RenameDies", "rename", "kill"},
    {"DeleteFails", "delete", "1"},
    {"DeleteKeepsFailing", "delete", "1+"},
    {"DeleteDies", "delete", "kill"},
    {"MkdirFails", "mkdir", "28"},
    {"MkdirKeepsFailing", "mkdir", "28+"},
    {"MkdirDies", "mkdir", "kill"},
    {"ChmodFails", "chmod", "1"},
    {"ChmodKeepsFailing", "chmod", "1+"},
    {"ChmodDies", "chmod", "kill"},
    {"LookFails", "look", "5"},
    {"LookKeepsFailing", "look", "5+"},
    {"LookDies", "look", "kill"},
    {"ListFails", "list", "5"},
    {"ListKeepsFailing", "list", "5+"},
    {"ListDies", "list", "kill"},
    {"SpawnFails", "spawn", "11"},
    {"SpawnKeepsFailing", "spawn", "11+"},
    {"SpawnDies", "spawn", "kill"},
    {"MallocFails", "malloc", "12"},
    {"MallocKeepsFailing", "malloc", "12+"},
    {"MallocDies", "malloc", "kill"},
    {"HeapFails", "heap", "12"},
    {"HeapKeepsFailing", "heap", "12+"},
    {"HeapDies", "heap", "kill"},
};

// Calls of installations, that a mere start does not make.
const Fault kInstallationFaults[] = {
    {"LinkFails", "link", "28"},         {"LinkDies", "link", "kill"}, {"WaitFails", "wait", "10"},
    {"WaitKeepsFailing", "wait", "10+"}, {"WaitDies", "wait", "kill"},
};

// Those of them that every component's makes.
const Fault kWaitFaults[] = {
    {"WaitFails", "wait", "10"},
    {"WaitKeepsFailing", "wait", "10+"},
    {"WaitDies", "wait", "kill"},
};

// Those that matter to a folder which is replaced.
const Fault kReplacementFaults[] = {
    {"OpenFails", "open", "13"},         {"CloseFails", "close", "5"},
    {"RenameFails", "rename", "5"},      {"RenameKeepsFailing", "rename", "5+"},
    {"RenameDies", "rename", "kill"},    {"DeleteDies", "delete", "kill"},
    {"MkdirFails", "mkdir", "28"},       {"MkdirDies", "mkdir", "kill"},
    {"ChmodFails", "chmod", "1"},        {"LookFails", "look", "5"},
    {"ListFails", "list", "5"},          {"LinkFails", "link", "28"},
    {"LinkKeepsFailing", "link", "28+"}, {"LinkDies", "link", "kill"},
};

// Those that matter to a new version folder.
const Fault kPublicationFaults[] = {
    {"OpenFails", "open", "13"},      {"CloseFails", "close", "5"},
    {"RenameFails", "rename", "5"},   {"RenameKeepsFailing", "rename", "5+"},
    {"RenameDies", "rename", "kill"}, {"DeleteDies", "delete", "kill"},
    {"MkdirDies", "mkdir", "kill"},   {"ChmodDies", "chmod", "kill"},
    {"WriteDies", "write", "kill"},   {"SpawnDies", "spawn", "kill"},
};

const char kCarriedRuntime[] = "Quorvane-Mac64JRE-1407-complete";
const char kCarriedBundle[] = "Quorvane-Mac64JRE-1407-complete.plugin";
const char kOlderRuntime[] = "Quorvane-Mac64JRE-1400-complete";
const char kDownloadedRuntime[] = "Quorvane-Mac64JRE-1500-complete";
const char kUpdater4[] = "Quorvane-Quorvane-4-complete";
const char kUpdater5[] = "Quorvane-Quorvane-5-complete";
const char kUpdater6[] = "Quorvane-Quorvane-6-complete";
const char kApplication2[] = "Quorvane-Demo-2-complete";
const char kApplication3[] = "Quorvane-Demo-3-complete";
const char kApplication4[] = "Quorvane-Demo-4-complete";

// An update from updater 5 to 6 and from application 3 to 4, all of it carried, where a folder of
// that application exists already. It is replaced, and so is that of the same runtime.
class Update : public Disturbed {
 protected:
  Update() {
    installer_.write();
    EXPECT_EQ(0, installer_.run().status);
    installer_.installApplication("4");
    keepState({kUpdater5,
               kUpdater6,
               kCarriedRuntime,
               "",
               {kUpdater5, kApplication3, kApplication4, kCarriedRuntime, kCarriedBundle},
               {kUpdater6, kApplication4, kCarriedBundle}});
    carryUpdate(&installer_);
    installer_.write();
  }
};

// The same update with a runtime that holds a hidden file, which is removed, and a hidden folder,
// which comes along to the earlier one's place.
class HiddenUpdate : public Update {
 protected:
  HiddenUpdate() {
    installer_.runtime = test::nestedRecord(
        "runtime", test::Installer::runtimeRecords() +
                       test::fileRecord("Contents/Home/.hidden", "what nobody needs") +
                       test::fileRecord("Contents/Home/.folder/file", "what is kept"));
    installer_.write();
  }
};

// The same update, where the updater is started as a process of its own, from a copy of java.
class SpawningUpdate : public Update {
 protected:
  SpawningUpdate() {
    installer_.properties = {{"force_spawn", "true"}};
    installer_.write();
  }
};

// An installation of the same versions over those of updater and application, because the runtime
// has gone.
class Renewal : public Disturbed {
 protected:
  Renewal() {
    installer_.write();
    installer_.installUpdater("5");
    installer_.installApplication("3");
    keepState({"",
               kUpdater5,
               kCarriedRuntime,
               "",
               {kUpdater5, kApplication3},
               {kUpdater5, kApplication3, kCarriedBundle}});
  }
};

// A first installation, all of it carried.
class Fresh : public Disturbed {
 protected:
  Fresh() {
    installer_.write();
    keepState({"", kUpdater5, kCarriedRuntime, "", {}, {kUpdater5, kApplication3, kCarriedBundle}});
  }
};

// A first start of what is installed, as a process of its own, from a copy of java that is made
// then.
class SpawningStart : public Disturbed {
 protected:
  SpawningStart() {
    installer_.properties = {{"force_spawn", "true"}};
    installer_.write();
    installer_.installCarried();
    keepState({kUpdater5,
               kUpdater5,
               kCarriedRuntime,
               "",
               {kUpdater5, kApplication3, kCarriedRuntime},
               {kUpdater5}});
  }
};

// A first installation that downloads its runtime.
class OnlineFresh : public Disturbed {
 protected:
  OnlineFresh() {
    site_.publishGoodSite();
    installer_.makeOnline(site_.serve());
    installer_.write();
    keepState({"", kUpdater5, kDownloadedRuntime, "", {}, {kUpdater5, kDownloadedRuntime}});
  }

  UpdateSite site_;
};

// An update of the updater, over an older one with an older runtime, that downloads a new runtime.
// Once the updater stands, the next run is content with the older runtime.
class OnlineUpdate : public OnlineFresh {
 protected:
  OnlineUpdate() {
    fs::remove_all(installer_ / "before");
    installer_.installUpdater("4");
    installer_.installRuntime("1400");
    installer_.installApplication("2");
    keepState({kUpdater4,
               kUpdater5,
               kDownloadedRuntime,
               kOlderRuntime,
               {kUpdater4, kOlderRuntime, kApplication2},
               {kUpdater5}});
  }
};

// `--install` of a downloaded component, beside an installation of application 3 with updater 5 and
// runtime 1407, as an update does it.
class Installed : public Disturbed {
 protected:
  Installed() {
    installer_.tail.publicKey = key_.publicKeyHex();
    installer_.write();
    EXPECT_EQ(0, installer_.run().status);
  }

  void disturbInstallOf(const std::string& component, const std::string& version,
                        const std::string& records, Scene scene) {
    const std::string what = component + " " + version;
    const std::string identity = test::fileRecord(
        "qvArcSpBlock_Component", component == "Quorvane" ? what + " for Demo" : what);
    test::writeFile(installer_ / "download",
                    test::compressed(test::signedBy(key_, records + identity)));
    scene.words = {"--install", component, version, installer_ / "download"};
    scene.oldUpdater = kUpdater5;
    for (const char* name : {kUpdater5, kApplication3, kCarriedRuntime, kCarriedBundle}) {
      scene.kept.emplace_back(name);
    }
    keepState(scene);
    disturbAll();
  }

 private:
  const tools::SigningKey key_ = test::testKey("first");
};

class InstalledApplication : public Installed {};
class InstalledOverDamage : public Installed {};
class InstalledUpdater : public Installed {};
class InstalledRuntime : public Installed {};

}  // namespace

TEST_P(InstalledApplication, DisturbedAtAnyCallLeavesNothingBrokenAndIsFinishedByTheNextRun) {
  Scene scene;
  scene.newUpdater = kUpdater5;
  scene.newRuntime = kCarriedRuntime;
  scene.made = {kApplication4};
  disturbInstallOf("Demo", "4", test::Installer::applicationRecords("4"), scene);
}
TEST_P(InstalledOverDamage, DisturbedAtAnyCallLosesNothingAndIsFinishedByTheNextRun) {
  installer_.installApplication("4");
  test::writeFile(installer_.master(kApplication4) + "/QuorvaneLaunch", "");
  Scene scene;
  scene.newUpdater = kUpdater5;
  scene.newRuntime = kCarriedRuntime;
  scene.kept = {kApplication4};
  scene.damaged = kApplication4;
  disturbInstallOf("Demo", "4", test::Installer::applicationRecords("4"), scene);
}
TEST_P(InstalledUpdater, DisturbedAtAnyCallLeavesNothingBrokenAndIsFinishedByTheNextRun) {
  Scene scene;
  scene.newUpdater = kUpdater6;
  scene.newRuntime = kCarriedRuntime;
  scene.made = {kUpdater6};
  disturbInstallOf("Quorvane", "6", test::Installer::updaterRecords(), scene);
}
TEST_P(InstalledRuntime, DisturbedAtAnyCallLeavesNothingBrokenAndIsFinishedByTheNextRun) {
  Scene scene;
  scene.newUpdater = kUpdater5;
  scene.newRuntime = kDownloadedRuntime;
  scene.made = {kDownloadedRuntime};
  disturbInstallOf("Mac64JRE", "1500", test::Installer::runtimeRecords(), scene);
}

TEST_P(Update, DisturbedAtAnyCallLeavesNothingBrokenAndIsFinishedByTheNextRun) {
  disturbAll();
}
TEST_P(HiddenUpdate, DisturbedAtAnyCallLeavesNothingBrokenAndIsFinishedByTheNextRun) {
  disturbAll();
}
TEST_P(SpawningUpdate, DisturbedAtAnyCallLeavesNothingBrokenAndIsFinishedByTheNextRun) {
  disturbAll();
}
TEST_P(SpawningStart, DisturbedAtAnyCallLeavesNothingBrokenAndIsFinishedByTheNextRun) {
  disturbAll();
}
TEST_P(Fresh, DisturbedAtAnyCallLeavesNothingBrokenAndIsFinishedByTheNextRun) {
  disturbAll();
}
TEST_P(Renewal, DisturbedAtAnyCallLeavesNothingBrokenAndIsFinishedByTheNextRun) {
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
INSTANTIATE_TEST_SUITE_P(Of, HiddenUpdate, testing::ValuesIn(kFaults), nameOf);
INSTANTIATE_TEST_SUITE_P(Of, SpawningUpdate, testing::ValuesIn(kFaults), nameOf);
INSTANTIATE_TEST_SUITE_P(Of, SpawningStart, testing::ValuesIn(kFaults), nameOf);
INSTANTIATE_TEST_SUITE_P(Of, Renewal, testing::ValuesIn(kReplacementFaults), nameOf);
INSTANTIATE_TEST_SUITE_P(Of, Fresh, testing::ValuesIn(kFaults), nameOf);
INSTANTIATE_TEST_SUITE_P(Of, OnlineFresh, testing::ValuesIn(kFaults), nameOf);
INSTANTIATE_TEST_SUITE_P(Of, OnlineUpdate, testing::ValuesIn(kFaults), nameOf);

INSTANTIATE_TEST_SUITE_P(Of, InstalledApplication, testing::ValuesIn(kFaults), nameOf);
INSTANTIATE_TEST_SUITE_P(Of, InstalledOverDamage, testing::ValuesIn(kReplacementFaults), nameOf);
INSTANTIATE_TEST_SUITE_P(Of, InstalledUpdater, testing::ValuesIn(kPublicationFaults), nameOf);
INSTANTIATE_TEST_SUITE_P(Of, InstalledRuntime, testing::ValuesIn(kFaults), nameOf);
INSTANTIATE_TEST_SUITE_P(OfWaiting, InstalledApplication, testing::ValuesIn(kWaitFaults), nameOf);
INSTANTIATE_TEST_SUITE_P(OfInstalling, InstalledRuntime, testing::ValuesIn(kInstallationFaults),
                         nameOf);

INSTANTIATE_TEST_SUITE_P(OfInstalling, Update, testing::ValuesIn(kInstallationFaults), nameOf);
INSTANTIATE_TEST_SUITE_P(OfInstalling, HiddenUpdate, testing::ValuesIn(kInstallationFaults),
                         nameOf);
INSTANTIATE_TEST_SUITE_P(OfInstalling, SpawningUpdate, testing::ValuesIn(kInstallationFaults),
                         nameOf);
INSTANTIATE_TEST_SUITE_P(OfInstalling, Fresh, testing::ValuesIn(kInstallationFaults), nameOf);
INSTANTIATE_TEST_SUITE_P(OfInstalling, OnlineFresh, testing::ValuesIn(kInstallationFaults), nameOf);
INSTANTIATE_TEST_SUITE_P(OfInstalling, OnlineUpdate, testing::ValuesIn(kInstallationFaults),
                         nameOf);
