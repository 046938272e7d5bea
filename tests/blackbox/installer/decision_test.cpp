// What an installer does with each decision about what is installed already, through the real
// executable. Every combination is tested on decide() itself.

#include <gtest/gtest.h>

#include <string>
#include <tuple>

#include "tests/installer/installer.h"
#include "tests/support/capture.h"
#include "tests/support/files.h"

namespace {

// What is installed of a component, compared with what the installer carries.
enum class Installed { None, Older, Equal, Newer };

using App = Installed;
using Row = std::tuple<Installed, App>;

const char kNewerUpdater[] =
    "[Extractor] Our GU version is newer than existing latest version so will extract and run";
const char kNoApp[] = "[Extractor] No app version found and we are offline so will extract";
const char kNewerApp[] =
    "[Extractor] Our App version is newer than existing latest version so will extract and run";
const char kLaunch[] = "[Extractor] Running without extraction now";

std::string expectedLine(const Row& row) {
  const auto& [updater, app] = row;
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
  static const char* const kNames[] = {"No", "Older", "Equal", "Newer"};
  const auto& [updater, app] = info.param;
  return std::string(kNames[static_cast<int>(updater)]) + "Updater_" +
         kNames[static_cast<int>(app)] + "App";
}

class Decision : public testing::TestWithParam<Row> {
 protected:
  // Installs what the row says and makes the installer of updater 5 and application 3.
  void prepare() {
    const auto& [updater, app] = GetParam();
    static const char* const kUpdater[] = {"", "4", "5", "6"};
    static const char* const kApp[] = {"", "2", "3", "4"};
    installer_.installUpdater(kUpdater[static_cast<int>(updater)]);
    installer_.installRuntime("1407");
    if (app != App::None) {
      installer_.installApplication(kApp[static_cast<int>(app)]);
    }
    installer_.write();
  }

  test::Installer installer_;
};

}  // namespace

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
                         testing::Values(Row{Installed::Older, App::Equal},
                                         Row{Installed::Equal, App::None},
                                         Row{Installed::Equal, App::Older},
                                         Row{Installed::Newer, App::Newer}),
                         nameOf);
