// What an installer decides from what is installed already: every combination, through the real
// executable.

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <tuple>
#include <vector>

#include "tests/installer/installer.h"
#include "tests/support/capture.h"
#include "tests/support/files.h"

namespace {

// What is installed of a component, compared with what the installer carries.
enum class Installed { None, Older, Equal, Newer };

// The application: as above, or none of it is carried.
enum class App { None, Older, Equal, Newer, Online };

using Row = std::tuple<Installed, bool, App>;

const char kNothing[] =
    "[Extractor] No latest GU or JRE version exists, will check tail for online/offline info";
const char kNewerUpdater[] =
    "[Extractor] Our GU version is newer than existing latest version so will extract and run";
const char kNoApp[] = "[Extractor] No app version found and we are offline so will extract";
const char kNewerApp[] =
    "[Extractor] Our App version is newer than existing latest version so will extract and run";
const char kLaunch[] = "[Extractor] Running without extraction now";

std::string expectedLine(const Row& row) {
  const auto& [updater, hasRuntime, app] = row;
  if (updater == Installed::None || !hasRuntime) {
    return kNothing;
  }
  if (updater == Installed::Older) {
    return kNewerUpdater;
  }
  switch (app) {
    case App::None:
      return kNoApp;
    case App::Older:
      return kNewerApp;
    default:
      return kLaunch;
  }
}

std::string nameOf(const testing::TestParamInfo<Row>& info) {
  static const char* const kUpdater[] = {"NoUpdater", "OlderUpdater", "EqualUpdater",
                                         "NewerUpdater"};
  static const char* const kApp[] = {"NoApp", "OlderApp", "EqualApp", "NewerApp", "Online"};
  const auto& [updater, hasRuntime, app] = info.param;
  return std::string(kUpdater[static_cast<int>(updater)]) +
         (hasRuntime ? "_Runtime_" : "_NoRuntime_") + kApp[static_cast<int>(app)];
}

class Decision : public testing::TestWithParam<Row> {
 protected:
  // Installs what the row says and makes the installer of updater 5 and application 3.
  void prepare() {
    const auto& [updater, hasRuntime, app] = GetParam();
    static const char* const kUpdater[] = {"", "4", "5", "6"};
    static const char* const kApp[] = {"", "2", "3", "4", ""};
    if (updater != Installed::None) {
      installer_.installUpdater(kUpdater[static_cast<int>(updater)]);
    }
    if (hasRuntime) {
      installer_.installRuntime("1407");
    }
    if (kApp[static_cast<int>(app)][0] != 0) {
      installer_.installApplication(kApp[static_cast<int>(app)]);
    }
    if (app == App::Online) {
      // An online installer may still carry a runtime; that keeps the network out of this table.
      const std::string runtime = installer_.runtime;
      installer_.makeOnline("http://192.0.2.10/");
      installer_.tail.jreVersion = "1407";
      installer_.runtime = runtime;
    }
    installer_.write();
  }

  test::Installer installer_;
};

class DecisionOnNames : public testing::Test {
 protected:
  // The line that says what a run decided.
  void expectDecision(const std::string& line) {
    installer_.write();
    const test::Result result = installer_.run();
    EXPECT_EQ(0, result.status) << result.out;
    EXPECT_TRUE(test::containsInOrder(test::logLinesOf(result.out), {line}));
  }

  void install(const std::string& updater, const std::string& app) {
    installer_.installUpdater(updater);
    installer_.installRuntime();
    installer_.installApplication(app);
  }

  test::Installer installer_;
};

}  // namespace

TEST_F(DecisionOnNames, VersionsAreComparedAsNumbers) {
  installer_.tail.appVersion = "10";
  install("5", "9");
  expectDecision(kNewerApp);
}

TEST_F(DecisionOnNames, LeadingZerosOfAVersionDoNotCount) {
  installer_.tail.appVersion = "0003";
  install("5", "3");
  expectDecision(kLaunch);
}

TEST_F(DecisionOnNames, VersionCountsUpToItsFirstLetter) {
  installer_.tail.guVersion = "6b9";
  install("6", "3");
  expectDecision(kLaunch);
}

TEST_F(DecisionOnNames, VersionThatBeginsWithALetterIsZero) {
  installer_.tail.guVersion = "v6";
  install("5", "3");
  expectDecision(kLaunch);
}

TEST_F(DecisionOnNames, FolderWithoutTheCompleteSuffixDoesNotCount) {
  install("5", "2");
  std::filesystem::create_directories(installer_.master("Quorvane-Demo-9"));
  expectDecision(kNewerApp);
}

TEST_F(DecisionOnNames, HighestOfSeveralVersionsIsWhatCounts) {
  install("5", "2");
  installer_.installApplication("3");
  installer_.installUpdater("4");
  expectDecision(kLaunch);
}

TEST_P(Decision, IsLoggedAndLeadsToALaunch) {
  prepare();
  const test::Result result = installer_.run();
  EXPECT_EQ(0, result.status) << result.out;
  EXPECT_TRUE(test::containsInOrder(
      test::logLinesOf(result.out),
      {"[Extractor] Checking for a latest valid GU", expectedLine(GetParam())}));
  const bool extracts =
      result.out.find("[Extractor] Extracted GU and GU Version") != std::string::npos;
  EXPECT_EQ(expectedLine(GetParam()) != kLaunch, extracts);
  EXPECT_TRUE(installer_.launched());
  EXPECT_TRUE(installer_.tempFolders().empty());
}

INSTANTIATE_TEST_SUITE_P(Of, Decision,
                         testing::Combine(testing::Values(Installed::None, Installed::Older,
                                                          Installed::Equal, Installed::Newer),
                                          testing::Bool(),
                                          testing::Values(App::None, App::Older, App::Equal,
                                                          App::Newer, App::Online)),
                         nameOf);
