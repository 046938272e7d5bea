#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <string>
#include <vector>

#include "launch/launch.h"
#include "launch/launch_file.h"
#include "tests/support/capture.h"
#include "tests/support/files.h"
#include "tests/support/temp_folder.h"
#include "tests/unit/launch/launching.h"
#include "tools/formats/launch_file_writer.h"

using namespace std::string_literals;
using Texts = std::vector<std::string>;

// What stands behind the class path on a command line.
static Texts behindClassPath(const Texts& started) {
  return started.size() < 3 ? Texts{} : Texts(started.begin() + 3, started.end());
}

class LaunchFileVersion : public Launching, public testing::WithParamInterface<long> {
 protected:
  LaunchFileVersion() {
    scene.launchFile.version = GetParam();
    scene.launchFile.updateClass = "com.sample.Update";
    scene.launchFile.icon = "sample.icns";
    scene.launchFile.urlRequired = true;
    scene.launchFile.arguments = {"extra"};
    arguments = {"wrapper", "last"};
    if (GetParam() < 3) {
      scene.launchFile.compatibilityClass.clear();
    }
    if (GetParam() >= 4) {
      scene.launchFile.postInstallClass = "com.sample.PostInstall";
      scene.launchFile.preUninstallClass = "com.sample.PreUninstall";
    }
    if (GetParam() >= 5) {
      scene.launchFile.jvmOptions = {"-Da=b", "-Dc=d"};
    }
    scene.launchFile.mustFork = GetParam() >= 6;
  }
};

INSTANTIATE_TEST_SUITE_P(OneToSix, LaunchFileVersion, testing::Range(1L, 7L));

TEST_P(LaunchFileVersion, StartsTheApplicationWithItsClassAndArguments) {
  scene.installFakeRuntime(scene.runtime());
  EXPECT_EQ(0, launch().result);
  const Texts started = startedWith();
  const Texts expected = {scene.runtime() + "/bin/Sample", "-cp",   "",        "com.sample.Main",
                          scene.propertiesFiles().front(), "extra", "wrapper", "last"};
  EXPECT_EQ(expected, started);
}

TEST_P(LaunchFileVersion, GivesTheProbeItsClassFromVersionThreeOn) {
  useProbe();
  const Launched launched = launch();
  EXPECT_EQ(0, launched.result);
  Texts expected;
  if (GetParam() >= 3) {
    expected = {"com.sample.Probe", scene.propertiesFiles().front(), "extra", "wrapper", "last"};
    EXPECT_TRUE(test::containsInOrder(launched.lines,
                                      {"[Extractor] Reading 1 extra args",
                                       "[Extractor] Read JRE compatibility class com.sample.Probe",
                                       "[Extractor] Appending 2 command line args"}));
  }
  EXPECT_EQ(expected, behindClassPath(startedWith()));
}

using LaunchFile = Launching;

TEST_F(LaunchFile, OfVersionTwoGivesAProbeACommandLineThatEndsBehindTheClassPath) {
  scene.launchFile.version = 2;
  scene.launchFile.compatibilityClass.clear();
  scene.launchFile.classPath = {"app.jar"};
  useProbe();
  const Launched launched = launch();
  EXPECT_EQ((Texts{test::fakeJava(), "-cp", scene.appFolder() + "/app.jar"}), startedWith());
  EXPECT_TRUE(test::containsInOrder(
      launched.lines, {"[Extractor] Executable: " + test::fakeJava(),
                       "[Extractor] Argument 2: " + scene.appFolder() + "/app.jar",
                       "[Extractor] Argument 3: (null)",
                       "[Extractor] Argument 4: " + scene.propertiesFiles().front()}));
}

TEST_F(LaunchFile, ThatIsMissingEndsTheProcessWithStatusOne) {
  scene.installFakeRuntime(scene.runtime());
  const Launched launched = launchAsItIs();
  EXPECT_FALSE(launched.returned);
  EXPECT_EQ(1, launched.result);
  EXPECT_EQ((Texts{"Unable to open launch file " + scene.appFolder() + "/QuorvaneLaunch"}),
            errorsIn(launched.lines));
}

TEST_F(LaunchFile, CutShortReadsAsEmptyFields) {
  test::writeFile(scene.appFolder() + "/QuorvaneLaunch",
                  "6\0com.sample.Main\0\0Sample\0\0"s + "0\0"s + "0\0"s + "0\0"s + "2\0a.j"s);
  scene.installFakeRuntime(scene.runtime());
  EXPECT_EQ(0, launchAsItIs().result);
  const std::string folder = scene.appFolder();
  EXPECT_EQ((Texts{scene.runtime() + "/bin/Sample", "-cp", folder + "/a.j:" + folder + "/",
                   "com.sample.Main", scene.propertiesFiles().front()}),
            startedWith());
}

TEST_F(LaunchFile, ThatIsEmptyStillWritesTheProperties) {
  test::writeFile(scene.appFolder() + "/QuorvaneLaunch", "");
  launchClass = 2;
  EXPECT_EQ(-1, launchAsItIs().result);
  EXPECT_EQ(scene.appFolder(), test::propertyIn(written(), "qvstat_app_dir"));
}

TEST_F(LaunchFile, WithMemoryFieldsOfZeroGivesNoMemoryOptions) {
  scene.installFakeRuntime(scene.runtime());
  launch();
  const Texts started = startedWith();
  ASSERT_GE(started.size(), 2u);
  EXPECT_EQ(scene.runtime() + "/bin/Sample", started[0]);
  EXPECT_EQ("-cp", started[1]);
}

TEST_F(LaunchFile, WithMemoryFieldsGivesTheOptionsInTheirOrder) {
  scene.launchFile.maximumHeapMegabytes = 512;
  scene.launchFile.initialHeapMegabytes = 1;
  scene.installFakeRuntime(scene.runtime());
  launch();
  const Texts started = startedWith();
  ASSERT_GE(started.size(), 4u);
  EXPECT_EQ((Texts{"-Xmx512m", "-Xms1m", "-cp"}), Texts(started.begin() + 1, started.begin() + 4));
}

TEST_F(LaunchFile, WithNegativeMemoryFieldsGivesNoMemoryOptions) {
  test::writeFile(scene.appFolder() + "/QuorvaneLaunch",
                  "1\0Main\0\0Sample\0\0"s + "0\0-1\0-9223372036854775808\0"s + "0\0"s + "0\0"s);
  scene.installFakeRuntime(scene.runtime());
  EXPECT_EQ(0, launchAsItIs().result);
  EXPECT_EQ("-cp", startedWith()[1]);
}

TEST_F(LaunchFile, WithTheLargestNumbersGivesWholeOptions) {
  test::writeFile(
      scene.appFolder() + "/QuorvaneLaunch",
      "1\0Main\0\0Sample\0\0"s + "0\0"s + "9223372036854775807\0"s + "1x\0"s + "0\0"s + "0\0"s);
  scene.installFakeRuntime(scene.runtime());
  EXPECT_EQ(0, launchAsItIs().result);
  EXPECT_EQ("-Xmx9223372036854775807m", startedWith()[1]);
  EXPECT_EQ("-Xms1m", startedWith()[2]);
}

// A launch file's bytes up to and including the memory fields.
static std::string head(const std::string& version) {
  return test::field(version) + "Main\0\0Sample\0\0"s + "0\0"s + "0\0"s + "0\0"s;
}

struct WrongCount {
  std::string name;
  std::string bytes;  // of the launch file
  std::string error;
};

// How the test's name shows it.
static void PrintTo(const WrongCount& value, std::ostream* out) {
  *out << value.name;
}

class LaunchFileCount : public Launching, public testing::WithParamInterface<WrongCount> {};

static const WrongCount kWrongCounts[] = {
    {"NegativeClassPathCount", head("1") + "-1\0"s,
     "Unable to launch: -1 more entries do not fit the class path, which has room for 50000"},
    {"HugeClassPathCount", head("1") + "9223372036854775807\0"s,
     "Unable to launch: 9223372036854775807 more entries do not fit the class path, which has room "
     "for 50000"},
    {"NegativeArgumentCount", head("1") + "0\0"s + "-5\0"s,
     "Unable to launch: -5 more entries do not fit the process command line, which has room for "
     "494"},
    {"HugeArgumentCount", head("1") + "0\0"s + "495\0"s,
     "Unable to launch: 495 more entries do not fit the process command line, which has room for "
     "494"},
    {"NegativeJvmOptionCount", head("5") + "0\0"s + "0\0"s + "\0\0\0"s + "-1\0"s,
     "Unable to launch: the launch file counts -1 JVM options"},
};

INSTANTIATE_TEST_SUITE_P(Wrong, LaunchFileCount, testing::ValuesIn(kWrongCounts),
                         [](const auto& info) { return info.param.name; });

TEST_P(LaunchFileCount, EndsTheProcessWithOneErrorLineAndStatusOne) {
  test::writeFile(scene.appFolder() + "/QuorvaneLaunch", GetParam().bytes);
  scene.installFakeRuntime(scene.runtime());
  const Launched launched = launchAsItIs();
  EXPECT_FALSE(launched.returned);
  EXPECT_EQ(1, launched.result);
  Texts errors = errorsIn(launched.lines);
  ASSERT_FALSE(errors.empty());
  EXPECT_EQ(GetParam().error, errors.back());
  EXPECT_FALSE(wasStarted());
}

TEST_F(LaunchFile, WithAHugeUnusedJvmOptionCountStopsReadingAtTheEndOfTheFile) {
  test::writeFile(scene.appFolder() + "/QuorvaneLaunch",
                  head("6") + "0\0"s + "0\0"s + "\0\0\0"s + "9223372036854775807\0-Da=b\0"s);
  scene.installFakeRuntime(scene.runtime());
  EXPECT_EQ(0, launchAsItIs().result);
}

TEST_F(LaunchFile, WithAsManyArgumentsAsTheCommandLineHoldsIsStarted) {
  scene.launchFile.arguments.assign(COMMAND_LINE_ROOM - 5, "x");
  scene.installFakeRuntime(scene.runtime());
  EXPECT_EQ(0, launch().result);
  EXPECT_EQ(static_cast<size_t>(COMMAND_LINE_ROOM), startedWith().size());
}

TEST_F(LaunchFile, WithOneCommandLineArgumentTooManyEndsTheProcess) {
  scene.launchFile.arguments.assign(COMMAND_LINE_ROOM - 5, "x");
  arguments = {"y"};
  scene.installFakeRuntime(scene.runtime());
  const Launched launched = launch();
  EXPECT_FALSE(launched.returned);
  EXPECT_EQ(1, launched.result);
  EXPECT_EQ(
      "Unable to launch: 1 more entries do not fit the process command line, which has room for 0",
      errorsIn(launched.lines).back());
}

namespace {

// A launch file of version 6 as it is looked at before a launch.
class LaunchFileLook : public testing::Test {
 protected:
  LaunchFileLook() {
    file_.mainClass = "com.sample.Main";
    file_.appName = "Sample";
    file_.classPath = {"one.jar", "two.jar"};
    file_.arguments = {"--word"};
    file_.compatibilityClass = "com.sample.Probe";
  }

  std::string flawOf(const std::string& bytes) {
    test::writeFile(path_, bytes);
    return flaw();
  }

  std::string flaw() {
    const char* text = flawOfLaunchFile(path_.c_str());
    return text == nullptr ? "none" : text;
  }

  tools::LaunchFile file_;
  const test::TempFolder folder_;
  const std::string path_ = folder_ / "QuorvaneLaunch";
};

const char kCut[] = "its launch file is cut short or damaged";

}  // namespace

TEST_F(LaunchFileLook, FindsNoFlawInAnyVersion) {
  file_.compatibilityClass.clear();
  for (long version = 1; version <= 6; ++version) {
    file_.version = version;
    EXPECT_EQ("none", flawOf(tools::encodeLaunchFile(file_))) << version;
  }
}

TEST_F(LaunchFileLook, FindsAFileCutAnywhereBeforeTheEndOfItsArguments) {
  const std::string bytes = tools::encodeLaunchFile(file_);
  const size_t end = bytes.find("com.sample.Probe");
  for (size_t length = 1; length < end; ++length) {
    EXPECT_EQ(kCut, flawOf(bytes.substr(0, length))) << length;
  }
  for (size_t length = end; length <= bytes.size(); ++length) {
    EXPECT_EQ("none", flawOf(bytes.substr(0, length))) << length;
  }
}

TEST_F(LaunchFileLook, FindsANegativeCount) {
  EXPECT_EQ(kCut, flawOf("2\0Main\0\0\0\0\0000\0000\0000\0-1\0000\0"s));
  EXPECT_EQ("none", flawOf("2\0Main\0\0\0\0\0000\0000\0000\0000\0000\0"s));
}

TEST_F(LaunchFileLook, FindsACountOfMoreThanThereIs) {
  EXPECT_EQ(kCut, flawOf("2\0Main\0\0\0\0\0000\0000\0000\000999999999999\0a\0b\0"s));
}

TEST_F(LaunchFileLook, FindsAMissingMainClass) {
  file_.mainClass.clear();
  EXPECT_EQ("its launch file names no main class", flawOf(tools::encodeLaunchFile(file_)));
}

TEST_F(LaunchFileLook, FindsThatThereIsNone) {
  EXPECT_EQ("its launch file is missing", flaw());
  EXPECT_EQ("its launch file is empty or no file", flawOf(""));
}

TEST_F(LaunchFileLook, NeverWaitsForWhatIsNoFile) {
  ASSERT_EQ(0, mkfifo(path_.c_str(), 0644));
  EXPECT_EQ("its launch file is empty or no file", flaw());
}

TEST_F(LaunchFileLook, FindsAFolderInItsPlace) {
  std::filesystem::create_directory(path_);
  EXPECT_EQ("its launch file is empty or no file", flaw());
}

TEST_F(LaunchFileLook, PrintsNothingOfAFieldThatIsTooLong) {
  test::writeFile(path_, "2\0Main\0\0"s + std::string(5000, 'a'));
  EXPECT_EQ("", test::capture([this] { flaw(); }).out);
}
