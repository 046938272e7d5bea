#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <string>
#include <vector>

#include "launch/launch_properties.h"
#include "support/log/clock.h"
#include "support/process/exit_status.h"
#include "tests/unit/launch/launching.h"

using namespace std::string_literals;
using Texts = std::vector<std::string>;

// The options file cannot be opened either, so that its last pause is a moment at which the launch
// file is open and the properties file is not: there a test takes the application folder away.
class PropertiesFile : public Launching {
 protected:
  static constexpr int kOptionsPauses = 5;

  PropertiesFile() {
    scene.installFakeRuntime(scene.runtime());
    test::makeUnopenable(scene.optionsFile());
  }

  void takeFolderAway() const {
    std::rename(scene.appFolder().c_str(), (scene / "elsewhere").c_str());
  }
  void bringFolderBack() const {
    std::rename((scene / "elsewhere").c_str(), scene.appFolder().c_str());
  }
};

static long countOf(const Texts& lines, const std::string& beginning) {
  return std::count_if(lines.begin(), lines.end(),
                       [&](const std::string& line) { return line.rfind(beginning, 0) == 0; });
}

TEST_F(PropertiesFile, IsWrittenWithItsNameAndLengthLogged) {
  const Launched launched = launch();
  ASSERT_EQ(1u, scene.propertiesFiles().size());
  const std::string length = std::to_string(writtenBytes().size());
  EXPECT_TRUE(test::containsInOrder(
      launched.lines,
      {"[Extractor] Writing launch properties file",
       "[Extractor] Writing launch properties to " + scene.propertiesFiles().front(),
       "[Extractor] Launch properties length is " + length, "[Extractor] Writing to file",
       "[Extractor] Finished writing launch properties file"}));
}

TEST_F(PropertiesFile, ThatCannotBeCreatedEndsTheProcessWithStatus99AfterFivePauses) {
  onPause = [this](int number) {
    if (number == kOptionsPauses) {
      takeFolderAway();
    }
  };
  const Launched launched = launch();
  EXPECT_FALSE(launched.returned);
  EXPECT_EQ(EXIT_STATUS_PROPERTIES_NOT_WRITTEN, launched.result);
  EXPECT_EQ(kOptionsPauses + 5, launched.pauses);
  EXPECT_EQ(5, countOf(launched.lines, "[Retry] Writing launch properties to " + scene.appFolder() +
                                           "/QVLaunchProperties-"));
  EXPECT_EQ("Unable to write Launch Properties file! Cannot run!", errorsIn(launched.lines).back());
  EXPECT_FALSE(wasStarted());
}

TEST_F(PropertiesFile, ThatCanBeCreatedAtTheThirdRetryIsHandedOnUnderItsFreshName) {
  onPause = [this](int number) {
    if (number == kOptionsPauses) {
      takeFolderAway();
    } else if (number == kOptionsPauses + 2) {
      bringFolderBack();
    }
  };
  const Launched launched = launch();
  EXPECT_EQ(0, launched.result);
  EXPECT_EQ(kOptionsPauses + 2, launched.pauses);
  EXPECT_EQ(3, countOf(launched.lines, "[Retry] Writing launch properties to "));
  ASSERT_EQ(1u, scene.propertiesFiles().size());
  EXPECT_EQ(scene.propertiesFiles().front(), startedWith().back());
}

TEST_F(PropertiesFile, ThatCannotBeWrittenWholeEndsTheProcessWithStatus99) {
  properties = "qvstat_big\0"s + std::string(300000, 'x') + "\0\0"s;
  beforeLaunch = [] {
    signal(SIGXFSZ, SIG_IGN);
    const rlimit limit{200000, 200000};
    setrlimit(RLIMIT_FSIZE, &limit);
  };
  const Launched launched = launch();
  EXPECT_FALSE(launched.returned);
  EXPECT_EQ(EXIT_STATUS_PROPERTIES_NOT_WRITTEN, launched.result);
  EXPECT_EQ("Unable to write Launch Properties file! Cannot run!", errorsIn(launched.lines).back());
  EXPECT_TRUE(scene.propertiesFiles().empty()) << "half a file is left";
  EXPECT_FALSE(wasStarted());
}

class PropertiesFileOfClass : public Launching, public testing::WithParamInterface<int> {};

INSTANTIATE_TEST_SUITE_P(Classes, PropertiesFileOfClass,
                         testing::Values(LAUNCH_APPLICATION, LAUNCH_COMPATIBILITY, 2, -1, 1000));

TEST_P(PropertiesFileOfClass, HoldsTheApplicationFolderWhateverIsLaunched) {
  launchClass = GetParam();
  scene.installFakeRuntime(scene.runtime());
  launch();
  EXPECT_EQ(scene.appFolder(), test::propertyIn(written(), "qvstat_app_dir"));
}

TEST_F(PropertiesFile, OfASecondLaunchHasAnotherName) {
  launch();
  launch();
  EXPECT_EQ(2u, scene.propertiesFiles().size());
}

// A folder in which every name that the next ten seconds give is taken, until something is added.
class TakenName : public Launching {
 protected:
  TakenName() { scene.installFakeRuntime(scene.runtime()); }

  static constexpr unsigned long kNames = 30000;

  void takeNames() const {
    const std::string start = scene.appFolder() + "/QVLaunchProperties-";
    const size_t dots = 2;
    const std::string count =
        std::to_string(test::namesIn(scene.appFolder()).size() + dots + kNames);
    // A name for each millisecond of the next seconds, and faster than they pass.
    const std::string file = scene.appFolder() + "/taken";
    test::writeFile(file, "another launch's");
    const unsigned long now = getCurrentTimeMillis();
    for (unsigned long i = 0; i < kNames; ++i) {
      const std::string name = start + std::to_string(now + i) + "-" + count;
      ASSERT_EQ(0, link(file.c_str(), name.c_str()));
    }
    unlink(file.c_str());
  }
};

TEST_F(TakenName, IsLeftAloneAndAnotherIsTaken) {
  beforeLaunch = [this] { takeNames(); };
  onPause = [this](int) { test::writeFile(scene.appFolder() + "/more", ""); };
  const Launched launched = launch();
  EXPECT_EQ(0, launched.result);
  EXPECT_EQ(1, launched.pauses);
  size_t others = 0;
  for (const std::string& file : scene.propertiesFiles()) {
    others += test::readFile(file) == "another launch's" ? 1 : 0;
  }
  EXPECT_EQ(kNames, others);
  EXPECT_EQ(kNames + 1, scene.propertiesFiles().size());
}
