#include "extractor/versions/decision.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <tuple>
#include <vector>

#include "extractor/run/run.h"
#include "support/text/strings.h"
#include "tests/support/capture.h"
#include "tests/support/files.h"
#include "tests/support/master_folder.h"
#include "tests/support/temp_folder.h"

namespace fs = std::filesystem;

namespace {

const char kNothingInstalled[] =
    "[Extractor] No latest GU or JRE version exists, will check tail for online/offline info";
const char kNewerGu[] =
    "[Extractor] Our GU version is newer than existing latest version so will extract and run";
const char kNoApp[] = "[Extractor] No app version found and we are offline so will extract";
const char kNewerApp[] =
    "[Extractor] Our App version is newer than existing latest version so will extract and run";
const char kGuIsEnough[] =
    "[Extractor] Latest GUversion is newer or same as our version so will just run";
const char kAppIsEnough[] =
    "[Extractor] Latest App version is newer or same as our version so will just run";

struct Case {
  const char* name;
  std::vector<const char*> installed;  // version folders in the master folder
  const char* guVersion;
  const char* appVersion;
  Decision expected;
  std::vector<std::string> lines;
};

std::ostream& operator<<(std::ostream& out, const Case& c) {
  return out << c.name;
}

const char kGu4[] = "Quorvane-Quorvane-4-complete";
const char kGu5[] = "Quorvane-Quorvane-5-complete";
const char kGu6[] = "Quorvane-Quorvane-6-complete";
const char kJre[] = "Quorvane-Mac64JRE-1407-complete";
const char kOtherJre[] = "Quorvane-OtherJRE-1407-complete";
const char kApp2[] = "Quorvane-MyApp-2-complete";
const char kApp3[] = "Quorvane-MyApp-3-complete";
const char kApp4[] = "Quorvane-MyApp-4-complete";

const Case kCases[] = {
    {"NothingInstalledInstalls", {}, "5", "3", Decision::Install, {kNothingInstalled}},
    {"EqualGuOnlineLaunches", {kGu5, kJre}, "5", "", Decision::Launch, {kGuIsEnough}},
    {"OlderGuOnlineInstalls", {kGu4, kJre}, "5", "", Decision::Install, {kNewerGu}},
    {"NewerGuOnlineLaunches", {kGu6, kJre}, "5", "", Decision::Launch, {kGuIsEnough}},
    {"EqualAppOfflineLaunches",
     {kGu5, kJre, kApp3},
     "5",
     "3",
     Decision::Launch,
     {kGuIsEnough, kAppIsEnough}},
    {"OlderAppOfflineInstalls",
     {kGu5, kJre, kApp2},
     "5",
     "3",
     Decision::Install,
     {kGuIsEnough, kNewerApp}},
    {"NewerAppOfflineLaunches",
     {kGu5, kJre, kApp4},
     "5",
     "3",
     Decision::Launch,
     {kGuIsEnough, kAppIsEnough}},
    {"NoAppOfflineInstalls", {kGu5, kJre}, "5", "3", Decision::Install, {kGuIsEnough, kNoApp}},
    {"OlderGuIsLookedAtBeforeTheApp", {kGu4, kJre, kApp3}, "5", "3", Decision::Install, {kNewerGu}},
    {"NoJreInstallsEvenWithANewerGu",
     {kGu6, kApp4},
     "5",
     "3",
     Decision::Install,
     {kNothingInstalled}},
    {"JreOfAnotherNameCountsAsNone",
     {kGu5, kOtherJre, kApp3},
     "5",
     "3",
     Decision::Install,
     {kNothingInstalled}},
    {"LauncherOnlyLaunchesWhatIsThere", {kGu5, kJre}, "", "", Decision::Launch, {kGuIsEnough}},
    {"GuVersionWithLettersCountsAsItsLeadingDigits",
     {kGu5, kJre},
     "5beta",
     "",
     Decision::Launch,
     {kGuIsEnough}},
    {"GuVersionWithoutDigitsCountsAsZero",
     {kGu5, kJre},
     "next",
     "",
     Decision::Launch,
     {kGuIsEnough}},
    {"VersionThatBeginsWithALetterIsZero",
     {kGu5, kJre, kApp3},
     "v6",
     "3",
     Decision::Launch,
     {kGuIsEnough, kAppIsEnough}},
    {"VersionCountsUpToItsFirstLetter",
     {kGu6, kJre, kApp3},
     "6b9",
     "3",
     Decision::Launch,
     {kGuIsEnough, kAppIsEnough}},
    {"VersionsAreComparedAsNumbers",
     {kGu5, kJre, "Quorvane-MyApp-9-complete"},
     "5",
     "10",
     Decision::Install,
     {kGuIsEnough, kNewerApp}},
    {"LeadingZerosOfAVersionDoNotCount",
     {kGu5, kJre, kApp3},
     "5",
     "0003",
     Decision::Launch,
     {kGuIsEnough, kAppIsEnough}},
    {"FolderWithoutTheCompleteSuffixDoesNotCount",
     {kGu5, kJre, kApp2, "Quorvane-MyApp-9"},
     "5",
     "3",
     Decision::Install,
     {kGuIsEnough, kNewerApp}},
    {"HighestOfSeveralVersionsIsWhatCounts",
     {kGu4, kGu5, kJre, kApp2, kApp3},
     "5",
     "3",
     Decision::Launch,
     {kGuIsEnough, kAppIsEnough}},
};

ExtractorRun decidingRun{};

Decision decideIn(const test::TempFolder& folder, const Case& c) {
  for (const char* name : c.installed) {
    test::MasterFolder(folder.path()).addWhole(name);
  }
  setPath(decidingRun.masterFolder, folder.path().c_str());
  setPath(decidingRun.jreName, "Mac64JRE");
  decidingRun.tail.appName = allocCopy("MyApp");
  decidingRun.tail.appVersion = allocCopy(c.appVersion);
  decidingRun.tail.guVersion = allocCopy(c.guVersion);
  return decide(decidingRun);
}

class Deciding : public testing::TestWithParam<Case> {};

}  // namespace

TEST_P(Deciding, ComesToItsResultWithItsLines) {
  const test::TempFolder folder;
  Decision decision{};
  const auto lines = test::logLinesOf([&] { decision = decideIn(folder, GetParam()); });
  EXPECT_EQ(GetParam().expected, decision);
  EXPECT_TRUE(test::containsInOrder(lines, GetParam().lines));
}

namespace {

// What is installed is at least as new as what is carried, but for a flaw in one folder.
class DecidingOnAFlaw : public testing::Test {
 protected:
  DecidingOnAFlaw() { master_.addWhole(kGu5).addWhole(kJre).addWhole(kApp3); }

  Decision decideWith(const char* guVersion) {
    return decideIn(folder_, {"", {}, guVersion, guVersion[0] == 0 ? "" : "3", {}, {}});
  }

  test::TempFolder folder_;
  const test::MasterFolder master_{folder_.path()};
};

}  // namespace

TEST_F(DecidingOnAFlaw, UpdaterWithoutLaunchFileCountsAsNotInstalled) {
  fs::remove(folder_ / kGu5 + "/QuorvaneLaunch");
  Decision decision{};
  const auto lines = test::logLinesOf([&] { decision = decideWith("5"); });
  EXPECT_EQ(Decision::Install, decision);
  EXPECT_TRUE(test::containsInOrder(
      lines, {"[PickFolder] Folder Quorvane-Quorvane-5-complete cannot start: its launch file is "
              "missing",
              kNothingInstalled, "[Extractor] Note: Latest JRE version does exist",
              "[Extractor] Note: No latest GU version exists"}));
}

TEST_F(DecidingOnAFlaw, UpdaterWithoutLaunchFileIsTriedWhereNoneIsCarried) {
  fs::remove(folder_ / kGu5 + "/QuorvaneLaunch");
  Decision decision{};
  test::capture([&] { decision = decideWith(""); });
  EXPECT_EQ(Decision::Launch, decision);
}

TEST_F(DecidingOnAFlaw, LowerVersionThatCanStartIsComparedWithTheCarriedOne) {
  master_.addWhole(kGu4);
  fs::remove(folder_ / kGu5 + "/QuorvaneLaunch");
  Decision decision{};
  const auto lines = test::logLinesOf([&] { decision = decideWith("5"); });
  EXPECT_EQ(Decision::Install, decision);
  EXPECT_TRUE(test::containsInOrder(lines, {kNewerGu}));
}

TEST_F(DecidingOnAFlaw, EmptyApplicationCountsAsNotInstalled) {
  fs::remove(folder_ / kApp3 + "/app.jar");
  Decision decision{};
  const auto lines = test::logLinesOf([&] { decision = decideWith("5"); });
  EXPECT_EQ(Decision::Install, decision);
  EXPECT_TRUE(test::containsInOrder(
      lines, {"[PickFolder] Folder Quorvane-MyApp-3-complete cannot start: it is empty", kNoApp}));
}

INSTANTIATE_TEST_SUITE_P(Table, Deciding, testing::ValuesIn(kCases),
                         [](const auto& info) { return std::string(info.param.name); });

namespace {

enum class Version { None, Older, Equal, Newer };

// The application: as above, or none of it is carried.
enum class App { None, Older, Equal, Newer, Online };

using Row = std::tuple<Version, bool, App>;

// The line that says what is decided; it is one of the first four exactly if all is extracted.
std::string decidingLine(const Row& row) {
  const auto& [updater, hasRuntime, app] = row;
  if (updater == Version::None || !hasRuntime) {
    return kNothingInstalled;
  }
  if (updater == Version::Older) {
    return kNewerGu;
  }
  switch (app) {
    case App::None:
      return kNoApp;
    case App::Older:
      return kNewerApp;
    case App::Online:
      return kGuIsEnough;
    default:
      return kAppIsEnough;
  }
}

std::string nameOfRow(const testing::TestParamInfo<Row>& info) {
  static const char* const kUpdater[] = {"NoUpdater", "OlderUpdater", "EqualUpdater",
                                         "NewerUpdater"};
  static const char* const kApp[] = {"NoApp", "OlderApp", "EqualApp", "NewerApp", "Online"};
  const auto& [updater, hasRuntime, app] = info.param;
  return std::string(kUpdater[static_cast<int>(updater)]) +
         (hasRuntime ? "_Runtime_" : "_NoRuntime_") + kApp[static_cast<int>(app)];
}

// Every combination of what is installed, beside updater 5 and application 3.
class DecidingOnAll : public testing::TestWithParam<Row> {
 protected:
  static Case caseOf(const Row& row) {
    static const char* const kUpdaters[] = {nullptr, kGu4, kGu5, kGu6};
    static const char* const kApps[] = {nullptr, kApp2, kApp3, kApp4, nullptr};
    const auto& [updater, hasRuntime, app] = row;
    Case c{"", {}, "5", app == App::Online ? "" : "3", {}, {}};
    for (const char* name : {kUpdaters[static_cast<int>(updater)], hasRuntime ? kJre : nullptr,
                             kApps[static_cast<int>(app)]}) {
      if (name != nullptr) {
        c.installed.push_back(name);
      }
    }
    return c;
  }
};

}  // namespace

TEST_P(DecidingOnAll, SaysAndReturnsWhatTheInstalledVersionsLeadTo) {
  const test::TempFolder folder;
  const std::string line = decidingLine(GetParam());
  Decision decision{};
  const auto lines = test::logLinesOf([&] { decision = decideIn(folder, caseOf(GetParam())); });
  EXPECT_EQ(line == kGuIsEnough || line == kAppIsEnough ? Decision::Launch : Decision::Install,
            decision);
  EXPECT_TRUE(test::containsInOrder(lines, {"[Extractor] Checking for a latest valid GU", line}));
}

INSTANTIATE_TEST_SUITE_P(
    Of, DecidingOnAll,
    testing::Combine(testing::Values(Version::None, Version::Older, Version::Equal, Version::Newer),
                     testing::Bool(),
                     testing::Values(App::None, App::Older, App::Equal, App::Newer, App::Online)),
    nameOfRow);

TEST(Deciding, WithoutAnUpdaterAndNothingInstalledEndsAfterTheTwoNotes) {
  const test::Result result = test::runInChild([] {
    const test::TempFolder folder;
    decideIn(folder, {"", {}, "", "", Decision::Install, {}});
  });
  EXPECT_EQ(1, result.status);
  EXPECT_TRUE(test::containsInOrder(
      test::logLinesOf(result.out),
      {"[Extractor] No GenericUpdater embedded, we are just a launcher",
       "[Extractor] ONLINE wrapper: No App embedded, GU will download and run",
       "[Extractor] Checking for a latest valid GU", kNothingInstalled,
       "[Extractor] Note: No latest JRE version exists",
       "[Extractor] Note: No latest GU version exists",
       "[Extractor] Unable to run (we are just a launcher)"}));
}

TEST(Deciding, NotesSayWhatDoesExist) {
  const test::TempFolder folder;
  const auto lines = test::logLinesOf([&] {
    decideIn(folder, {"", {kGu4, kJre}, "5", "3", Decision::Install, {}});
  });
  EXPECT_TRUE(test::containsInOrder(
      lines,
      {"[Extractor] GenericUpdater version is 5", "[Extractor] OFFLINE wrapper: App version is 3",
       "[Extractor] Latest GU version exists: Quorvane-Quorvane-4-complete",
       "[Extractor] Existing JRE exists: Quorvane-Mac64JRE-1407-complete", kNewerGu,
       "[Extractor] Note: Latest JRE version does exist",
       "[Extractor] Note: Latest GU version does exist"}));
}
