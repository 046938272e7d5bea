// Applications launched from their launch file on a real Java runtime: inside the launching process
// and as processes of their own.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "tests/support/files.h"
#include "tests/support/java_runtime.h"
#include "tests/support/launch_scene.h"
#include "tests/support/process.h"
#include "tests/support/product_system.h"
#include "tests/support/test_home.h"

namespace fs = std::filesystem;
using namespace std::string_literals;
using Texts = std::vector<std::string>;

static const char kSystemJava[] = QUORVANE_TEST_RUNTIME "/bin/java";
static const int kUnwritableProperties = 99;

// What the guest program left: see tests/fakes/java/guest/Launched.java.
struct Guest {
  Texts arguments;
  std::string properties;
  std::string process;
  std::string executable;
  std::string classPath;
  std::string property;
};

class ApplicationLaunch : public testing::Test {
 protected:
  ApplicationLaunch() {
    scene.launchFile.mainClass = "guest.Launched";
    scene.launchFile.compatibilityClass = "guest.Launched";
    scene.launchFile.appName = "Guest";
    scene.launchFile.classPath = {"classes"};
    fs::create_directories(record());
    fs::create_directories(scene.appFolder());
    fs::create_directory_symlink(QUORVANE_TEST_CLASSES, scene.appFolder() + "/classes");
  }

  std::string record() const { return scene / "record"; }

  // Writes the launch file and runs the driver until its end and the application's.
  void launch(const Texts& options = {}, const Texts& arguments = {}) {
    scene.writeLaunchFile();
    launchAsItIs(options, arguments);
  }

  void launchAsItIs(const Texts& options, const Texts& arguments) {
    test::Command command;
    command.arguments = {test::product("launch_driver"), scene.master(), scene.appFolderName, jre};
    command.arguments.insert(command.arguments.end(), options.begin(), options.end());
    command.arguments.push_back("--");
    command.arguments.insert(command.arguments.end(), arguments.begin(), arguments.end());
    command.environment = home.environment();
    command.environment["LAUNCHED_RECORD"] = record();
    command.environment["LC_ALL"] = "C.UTF-8";
    command.seconds = 120;
    result = test::run(command);
    EXPECT_FALSE(result.timedOut);
    lines = test::logLinesOf(result.out);
  }

  // Launches as a process of its own, whose record the driver waits for.
  void spawn(const Texts& options = {}, const Texts& arguments = {}) {
    Texts all = {"--spawn", "--wait-for", record() + "/arguments"};
    all.insert(all.end(), options.begin(), options.end());
    launch(all, arguments);
  }

  bool logged(const std::string& line) const {
    return std::find(lines.begin(), lines.end(), line) != lines.end();
  }

  bool guestRan() const { return test::exists(record() + "/arguments"); }

  Guest guest() const {
    Guest seen;
    seen.arguments = test::endedTexts(test::readFile(record() + "/arguments"));
    seen.properties = test::readFile(record() + "/properties");
    const Texts process = test::linesOf(test::readFile(record() + "/process"));
    if (process.size() == 4) {
      seen.process = process[0];
      seen.executable = process[1];
      seen.classPath = process[2];
      seen.property = process[3];
    }
    return seen;
  }

  // The properties that a launch with the driver's defaults hands on, and `more` behind them.
  std::string expectedProperties(const std::string& more = "") const {
    return "qvstat_update_url\0\x04\0qvstat_app_dir\0"s + scene.appFolder() +
           "\0qvstat_jre_name\0"s + jre + "\0qvstat_launched_from_dynprops\0\x04"s + more;
  }

  test::LaunchScene scene;
  test::TestHome home;
  std::string jre = "Mac64JRE";
  test::Result result;
  Texts lines;
};

TEST_F(ApplicationLaunch, ByJniRunsInsideTheLaunchingProcess) {
  test::makeRuntime(scene.runtime());
  launch();
  EXPECT_EQ(0, result.status) << result.err;
  EXPECT_TRUE(logged("[Extractor] Return code for JNI launch was 0"));
  EXPECT_TRUE(logged("[Driver] Result 0"));
  EXPECT_TRUE(logged("[JNILaunch] [pid=" + guest().process + "] [mainThread=0]"));
  EXPECT_FALSE(logged("[Extractor] Attempting spawn launch"));
  EXPECT_EQ(scene.appFolder() + "/classes", guest().classPath);
}

TEST_F(ApplicationLaunch, ByJniHandsThePropertiesOnByteForByte) {
  test::makeRuntime(scene.runtime());
  launch({"--static", "app_name", "Größe", "--dynamic", "empty", "", "--update-url", "D",
          "--dynamic-url", "http://127.0.0.1/", "--from", "/opt/Guest"});
  const std::string expected =
      "qvstat_app_name\0Größe\0qvdyna_empty\0\x04\0qvstat_update_url\0D\0"s +
      "qvdyna_update_url\0http://127.0.0.1/\0qvstat_app_dir\0"s + scene.appFolder() +
      "\0qvstat_jre_name\0Mac64JRE\0qvstat_launched_from_dynprops\0/opt/Guest"s;
  EXPECT_EQ(expected, guest().properties);
  ASSERT_EQ(1u, scene.propertiesFiles().size());
  EXPECT_EQ(expected, test::readFile(scene.propertiesFiles().front()));
}

TEST_F(ApplicationLaunch, ByJniHandsEveryKindOfArgumentOn) {
  test::makeRuntime(scene.runtime());
  scene.launchFile.arguments = {"extra \"one\"", ""};
  const Texts words = {"wrapper", "two words", "'", "\"", "\\", "a\nb", "Größe 漢字 €", "-cp", " "};
  launch({}, words);
  Texts expected = {scene.propertiesFiles().front(), "extra \"one\"", ""};
  expected.insert(expected.end(), words.begin(), words.end());
  EXPECT_EQ(expected, guest().arguments);
}

TEST_F(ApplicationLaunch, ByJniEndsWithTheStatusThatTheApplicationExitsWith) {
  test::makeRuntime(scene.runtime());
  launch({}, {"exit:7"});
  EXPECT_EQ(7, result.status);
}

TEST_F(ApplicationLaunch, ByJniTakesTheMemoryOptions) {
  test::makeRuntime(scene.runtime());
  scene.launchFile.maximumHeapMegabytes = 64;
  scene.launchFile.initialHeapMegabytes = 16;
  launch();
  EXPECT_TRUE(logged("[JNILaunch] JVM Argument 0 = -Xmx64m"));
  EXPECT_TRUE(logged("[JNILaunch] JVM Argument 1 = -Xms16m"));
  EXPECT_TRUE(guestRan());
}

class ApplicationLaunchByVersion : public ApplicationLaunch,
                                   public testing::WithParamInterface<long> {};

INSTANTIATE_TEST_SUITE_P(OneToSix, ApplicationLaunchByVersion, testing::Range(1L, 7L));

TEST_P(ApplicationLaunchByVersion, StartsByJni) {
  test::makeRuntime(scene.runtime());
  scene.launchFile.version = GetParam();
  scene.launchFile.compatibilityClass = GetParam() >= 3 ? "guest.Launched" : "";
  if (GetParam() >= 5) {
    scene.launchFile.jvmOptions = {"-Dguest.property=unused"};
  }
  launch();
  EXPECT_EQ(expectedProperties(), guest().properties);
  EXPECT_EQ("not set", guest().property);
}

TEST_F(ApplicationLaunch, WithoutAnOptionsFileRemembersNothing) {
  test::makeRuntime(scene.runtime());
  launch();
  EXPECT_EQ(expectedProperties(), guest().properties);
}

TEST_F(ApplicationLaunch, WithNoRememberedOptionSaysSo) {
  test::makeRuntime(scene.runtime());
  scene.writeOptionsFile({});
  launch();
  EXPECT_EQ(expectedProperties("\0qvstat_jvm_options_count\0"s + "0"), guest().properties);
}

TEST_F(ApplicationLaunch, WithOneRememberedOptionAppliesIt) {
  test::makeRuntime(scene.runtime());
  scene.writeOptionsFile({"-Dguest.property=a value"});
  launch();
  EXPECT_EQ("a value", guest().property);
  EXPECT_EQ(expectedProperties("\0qvstat_jvm_options_count\0"s +
                               "1\0qvstat_jvm_options_0\0-Dguest.property=a value"s),
            guest().properties);
}

TEST_F(ApplicationLaunch, WithFortyRememberedOptionsAppliesTheLast) {
  test::makeRuntime(scene.runtime());
  Texts options;
  std::string more = "\0qvstat_jvm_options_count\0"s + "40";
  for (int i = 0; i < 40; ++i) {
    options.push_back("-Dguest.property=" + std::to_string(i));
    more += "\0qvstat_jvm_options_"s + std::to_string(i) + "\0"s + options.back();
  }
  scene.writeOptionsFile(options);
  launch();
  EXPECT_EQ("39", guest().property);
  EXPECT_EQ(expectedProperties(more), guest().properties);
}

TEST_F(ApplicationLaunch, WithAnOptionsFileThatCannotBeOpenedStartsAfterFivePauses) {
  test::makeRuntime(scene.runtime());
  test::makeUnopenable(scene.optionsFile());
  launch();
  EXPECT_EQ(5, std::count(lines.begin(), lines.end(), "[Driver] Pause of 500 seconds"));
  EXPECT_TRUE(logged("JRE LSO file does not exist"));
  EXPECT_EQ(expectedProperties(), guest().properties);
}

TEST_F(ApplicationLaunch, FromTheRuntimesBundleAloneRunsInsideTheProcess) {
  test::makeRuntime(scene.runtime() + ".plugin");
  launch();
  EXPECT_TRUE(logged("[Extractor] JRE folder is " + scene.runtime() + ".plugin"));
  EXPECT_TRUE(logged("[Extractor] Return code for JNI launch was 0"));
  EXPECT_TRUE(guestRan());
}

TEST_F(ApplicationLaunch, FromAPlainRuntimeBesideItsBundleTakesThePlainOne) {
  test::makeRuntime(scene.runtime());
  test::makeRuntime(scene.runtime() + ".plugin");
  launch();
  EXPECT_TRUE(logged("[Extractor] JRE folder is " + scene.runtime()));
  EXPECT_TRUE(logged("[Extractor] Return code for JNI launch was 0"));
  EXPECT_TRUE(guestRan());
}

TEST_F(ApplicationLaunch, ByForcedSpawnRunsAProcessOfTheApplicationsName) {
  test::makeRuntime(scene.runtime());
  scene.launchFile.appName = "Größe der 漢字";
  scene.writeOptionsFile({"-Dguest.property=a value"});
  spawn();
  EXPECT_TRUE(logged("[Driver] Result 0"));
  EXPECT_FALSE(logged("[JNILaunch] [pid=" + guest().process + "] [mainThread=0]"));
  EXPECT_EQ(scene.runtime() + "/bin/Größe der 漢字", guest().executable);
  EXPECT_EQ("a value", guest().property);
  EXPECT_EQ(scene.appFolder() + "/classes", guest().classPath);
}

TEST_F(ApplicationLaunch, ByForcedSpawnHandsEveryKindOfArgumentOn) {
  test::makeRuntime(scene.runtime());
  const Texts words = {"wrapper", "two words", "'\"\\", "a\nb", "Größe 漢字 €", "", "-cp"};
  spawn({}, words);
  Texts expected = {scene.propertiesFiles().front()};
  expected.insert(expected.end(), words.begin(), words.end());
  EXPECT_EQ(expected, guest().arguments);
  EXPECT_EQ(expectedProperties(), guest().properties);
}

TEST_F(ApplicationLaunch, ThatFailsByJniIsSpawnedWithTheSameArguments) {
  test::makeRuntimeForProcessesOnly(scene.runtime());
  scene.launchFile.arguments = {"extra"};
  launch({"--wait-for", record() + "/arguments"}, {"wrapper", "two words"});
  EXPECT_TRUE(test::containsInOrder(
      lines, {"[JNILaunch] [ERROR] Unable to load JRE library!",
              "[Extractor] Return code for JNI launch was 1",
              "[Extractor] JNI launch failed. Attempting legacy spawn instead",
              "[Extractor] Attempting spawn launch", "[Driver] Result 0"}));
  EXPECT_EQ((Texts{scene.propertiesFiles().front(), "extra", "wrapper", "two words"}),
            guest().arguments);
  EXPECT_EQ(scene.runtime() + "/bin/Guest", guest().executable);
}

TEST_F(ApplicationLaunch, OfAClassThatIsMissingIsSpawnedAfterJni) {
  test::makeRuntime(scene.runtime());
  scene.launchFile.mainClass = "guest.Missing";
  launch();
  EXPECT_TRUE(test::containsInOrder(
      lines,
      {"[JNILauncher] Searching for clazz failed!", "[Extractor] Return code for JNI launch was 1",
       "[Extractor] Attempting spawn launch", "[Driver] Result 0"}));
  EXPECT_FALSE(guestRan());
}

struct ProbeEnd {
  std::string name;
  std::string argument;
  int result;
};

// How the test's name shows it.
static void PrintTo(const ProbeEnd& value, std::ostream* out) {
  *out << value.name;
}

class ProbeLaunch : public ApplicationLaunch, public testing::WithParamInterface<ProbeEnd> {};

INSTANTIATE_TEST_SUITE_P(Ends, ProbeLaunch,
                         testing::Values(ProbeEnd{"Status72", "exit:72", 72},
                                         ProbeEnd{"Status0", "exit:0", 0},
                                         ProbeEnd{"Status3", "exit:3", 3},
                                         ProbeEnd{"Killed", "kill", -1}),
                         [](const auto& info) { return info.param.name; });

TEST_P(ProbeLaunch, OnASystemRuntimeReturnsHowItEnded) {
  jre = kSystemJava;
  launch({"--class", "1"}, {GetParam().argument});
  EXPECT_EQ(0, result.status);
  EXPECT_TRUE(logged("[Driver] Result " + std::to_string(GetParam().result)));
  EXPECT_TRUE(logged("[Extractor] Checking for existing system JRE "s + kSystemJava));
  EXPECT_EQ(expectedProperties(), guest().properties);
  EXPECT_EQ((Texts{scene.propertiesFiles().front(), GetParam().argument}), guest().arguments);
}

TEST_F(ApplicationLaunch, OfVersionTwoEndsTheProbesCommandLineBehindTheClassPath) {
  jre = kSystemJava;
  scene.launchFile.version = 2;
  scene.launchFile.compatibilityClass.clear();
  launch({"--class", "1"});
  EXPECT_TRUE(logged("[Driver] Result 1"));
  EXPECT_NE(std::string::npos, (result.out + result.err).find("Usage: java"));
  EXPECT_FALSE(guestRan());
}

TEST_F(ApplicationLaunch, OfAnotherClassWritesThePropertiesAndStartsNothing) {
  test::makeRuntime(scene.runtime());
  launch({"--class", "2"});
  EXPECT_TRUE(logged("[Driver] Result -1"));
  ASSERT_EQ(1u, scene.propertiesFiles().size());
  EXPECT_EQ(expectedProperties(), test::readFile(scene.propertiesFiles().front()));
  EXPECT_FALSE(guestRan());
}

TEST_F(ApplicationLaunch, WithoutALaunchFileEndsWithStatusOne) {
  test::makeRuntime(scene.runtime());
  launchAsItIs({}, {});
  EXPECT_EQ(1, result.status);
  EXPECT_TRUE(logged("Unable to open launch file " + scene.appFolder() + "/QuorvaneLaunch"));
}

TEST_F(ApplicationLaunch, WithoutARuntimeEndsWithStatusOne) {
  launch();
  EXPECT_EQ(1, result.status);
  EXPECT_TRUE(logged("No private JRE available!"));
}

TEST_F(ApplicationLaunch, WithTooManyArgumentsEndsWithStatusOneAndStartsNothing) {
  test::makeRuntime(scene.runtime());
  launch({}, Texts(500, "x"));
  EXPECT_EQ(1, result.status);
  EXPECT_TRUE(
      logged("Unable to launch: 1 more entries do not fit the process command line, which "
             "has room for 0"));
  EXPECT_FALSE(guestRan());
}

// In a folder so deep that the launch file's path is just short enough for the system and the
// properties file's is too long: that holds for an administrator's account too.
TEST_F(ApplicationLaunch, WhosePropertiesCannotBeWrittenEndsWithStatus99) {
  const size_t kFolderLength = test::longestPath() - 26;
  std::string master = scene / "deep";
  const std::string last = "/" + scene.appFolderName;
  while (master.size() + last.size() < kFolderLength) {
    const size_t missing = kFolderLength - master.size() - last.size();
    master += "/" + std::string(missing > 200 ? 100 : missing - 1, 'd');
  }
  scene.launchFile.classPath.clear();
  test::writeFile(master + last + "/QuorvaneLaunch", tools::encodeLaunchFile(scene.launchFile));
  test::Command command;
  command.arguments = {
      test::product("launch_driver"), master, scene.appFolderName, jre, "--class", "2"};
  command.environment = home.environment();
  result = test::run(command);
  lines = test::logLinesOf(result.out);
  EXPECT_EQ(kUnwritableProperties, result.status);
  EXPECT_EQ(5, std::count(lines.begin(), lines.end(), "[Driver] Pause of 500 seconds"));
  EXPECT_TRUE(logged("Unable to write Launch Properties file! Cannot run!"));
  EXPECT_EQ((Texts{"QuorvaneLaunch"}), test::namesIn(master + last));
}
