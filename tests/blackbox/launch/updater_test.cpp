// The updater and the sample application, launched from their launch files on a real Java
// runtime.

#include <gtest/gtest.h>
#include <utime.h>

#include <algorithm>
#include <chrono>
#include <ctime>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "tests/support/files.h"
#include "tests/support/java_runtime.h"
#include "tests/support/launch_scene.h"
#include "tests/support/master_folder.h"
#include "tests/support/process.h"
#include "tests/support/product_system.h"
#include "tests/support/temp_folder.h"
#include "tests/support/test_home.h"
#include "tools/formats/launch_file_writer.h"

namespace fs = std::filesystem;
using namespace std::string_literals;
using Texts = std::vector<std::string>;

static const std::string kUpdater = QUORVANE_UPDATER;
static const std::string kApp = QUORVANE_EXAMPLES "/app";

class Updater : public testing::Test {
 protected:
  Updater() {
    fs::create_directories(guFolder());
    fs::copy_file(kUpdater + "/updater.jar", guFolder() + "/updater.jar");
    fs::copy_file(kUpdater + "/QuorvaneLaunch", guFolder() + "/QuorvaneLaunch");
    setStatic("app_name", "Sample");
  }

  std::string master() const { return installed.path(); }
  std::string guFolder() const { return installed.component("Quorvane", "5"); }
  std::string appFolder(const std::string& version) const {
    return master() + "/Quorvane-Sample-" + version;
  }

  void setStatic(const std::string& key, const std::string& value) {
    options.insert(options.end(), {"--static", key, value});
  }

  // Installs the sample application under the rest of a version folder's name.
  void installSample(const std::string& version) const {
    fs::create_directories(appFolder(version));
    fs::copy_file(kApp + "/app.jar", appFolder(version) + "/app.jar");
    fs::copy_file(kApp + "/QuorvaneLaunch", appFolder(version) + "/QuorvaneLaunch");
  }

  // Installs the guest program of the tests as the application.
  void installGuest(tools::LaunchFile file) const {
    file.mainClass = file.mainClass.empty() ? "guest.Program" : file.mainClass;
    file.appName = "Sample";
    file.classPath = {"classes"};
    test::writeFile(appFolder("3-complete") + "/QuorvaneLaunch", tools::encodeLaunchFile(file));
    fs::create_directory_symlink(QUORVANE_TEST_CLASSES, appFolder("3-complete") + "/classes");
  }

  // Installs the guest program that records how it was started: see guest/Launched.java.
  void installRecordingGuest(tools::LaunchFile file) const {
    file.mainClass = "guest.Launched";
    file.arguments = {kUpdater + "/QuorvaneLaunch"};
    installGuest(file);
    fs::create_directories(record());
  }

  std::string record() const { return folder / "record"; }
  std::string guestLine(size_t index) const {
    return test::linesOf(test::readFile(record() + "/process")).at(index);
  }
  std::string guestProcess() const { return guestLine(0); }

  test::Result runDriver(const std::string& jre, const Texts& more, const Texts& words) const {
    test::Command command;
    command.arguments = {test::product("launch_driver"),
                         master(),
                         "Quorvane-Quorvane-5-complete",
                         jre,
                         "--from",
                         "/opt/Sample"};
    command.arguments.insert(command.arguments.end(), options.begin(), options.end());
    command.arguments.insert(command.arguments.end(), more.begin(), more.end());
    command.arguments.push_back("--");
    command.arguments.insert(command.arguments.end(), words.begin(), words.end());
    command.environment = home.environment();
    command.environment["LC_ALL"] = "C.UTF-8";
    command.environment["LAUNCHED_RECORD"] = record();
    for (const auto& [name, value] : environment) {
      command.environment[name] = value;
    }
    command.seconds = 120;
    return test::run(command);
  }

  // Launches the updater on a private runtime with the words of a command line.
  void launch(const Texts& words = {"/opt/Sample"}) {
    test::makeRuntime(installed.component("Mac64JRE", "1"));
    result = runDriver("Mac64JRE", {}, words);
    EXPECT_FALSE(result.timedOut) << result.out << result.err;
    lines = test::logLinesOf(result.out);
  }

  bool printed(const std::string& line) const {
    return std::find(lines.begin(), lines.end(), line) != lines.end();
  }

  void expectRefusal(const std::string& reason) {
    EXPECT_EQ(1, result.status);
    EXPECT_NE(std::string::npos,
              result.err.find("[Updater] Cannot start the application. " + reason))
        << result.err;
  }

  test::TempFolder folder;
  const test::MasterFolder installed{folder / "Quorvane-Sample"};
  test::TestHome home;
  Texts options;
  std::map<std::string, std::string> environment;
  test::Result result;
  Texts lines;
};

TEST_F(Updater, StartsTheNewestCompleteApplication) {
  installSample("3-complete");
  installSample("0020-complete");
  installSample("100");
  installSample("x-complete");
  launch();
  EXPECT_EQ(0, result.status) << result.err;
  EXPECT_TRUE(printed("Sample version 0020 on Java 17"));
  EXPECT_TRUE(printed("[Driver] Result 0"));
}

TEST_F(Updater, HandsTheLaunchFilesThenTheCommandLinesArgumentsOn) {
  installSample("3-complete");
  launch({"./some/where/Sample", "--console", "two words", "Größe"});
  EXPECT_TRUE(test::containsInOrder(
      lines,
      {"Sample version 3 on Java 17", "Argument: from the launch file", "Argument: --console",
       "Argument: two words", "Argument: Größe", "[JNILauncher] Run complete."}));
  EXPECT_FALSE(printed("Argument: ./some/where/Sample"));
}

TEST_F(Updater, SkipsItsOwnArgumentsAndKeepsAFirstWordThatIsNotTheLaunchingProgram) {
  tools::LaunchFile own;
  own.mainClass = "org.example.updater.GenericUpdater";
  own.appName = "Sample";
  own.classPath = {"updater.jar"};
  own.arguments = {"own one", "own two"};
  test::writeFile(guFolder() + "/QuorvaneLaunch", tools::encodeLaunchFile(own));
  installGuest({});
  launch({"first", "second"});
  EXPECT_TRUE(
      test::containsInOrder(lines, {"[Guest] arguments 2", "[Guest] <first>", "[Guest] <second>"}));
}

TEST_F(Updater, RunsTheApplicationInsideItsOwnProcess) {
  installRecordingGuest({});
  launch({"/opt/Sample", "exit:7"});
  EXPECT_EQ(7, result.status);
  EXPECT_TRUE(printed("[JNILaunch] [pid=" + guestProcess() + "] [mainThread=0]"));
  EXPECT_EQ(appFolder("3-complete") + "/classes", guestLine(2));
}

TEST_F(Updater, RunsAnApplicationThatMustForkAsAChild) {
  tools::LaunchFile file;
  file.mustFork = true;
  installRecordingGuest(file);
  launch({"/opt/Sample", "exit:7"});
  EXPECT_EQ(7, result.status);
  EXPECT_FALSE(printed("[JNILaunch] [pid=" + guestProcess() + "] [mainThread=0]"));
  EXPECT_EQ(appFolder("3-complete") + "/classes", guestLine(2));
}

TEST_F(Updater, HandsTheRequestedUrlOn) {
  installSample("3-complete");
  options.insert(options.end(), {"--dynamic", "url_req", "sample:a b"});
  launch();
  EXPECT_TRUE(printed("Asked to open: sample:a b"));
}

TEST_F(Updater, LetsTheJvmPrintWhatTheApplicationThrows) {
  installGuest({});
  launch({"/opt/Sample", "throw"});
  EXPECT_EQ(0, result.status);
  EXPECT_NE(std::string::npos, result.err.find("thrown on purpose"));
}

TEST_F(Updater, StartsAnApplicationWithJvmOptionsAsAChild) {
  tools::LaunchFile file;
  file.jvmOptions = {"-Dguest.property=a value"};
  file.maximumHeapMegabytes = 64;
  file.initialHeapMegabytes = 16;
  installGuest(file);
  launch({"/opt/Sample", "exit"});
  EXPECT_EQ(7, result.status);
  EXPECT_TRUE(printed("[Guest] property a value"));
  EXPECT_TRUE(printed("[Guest] class path " + appFolder("3-complete") + "/classes"));
}

TEST_F(Updater, HandsTheRememberedOptionsToAChild) {
  tools::LaunchFile file;
  file.mustFork = true;
  installGuest(file);
  test::writeFile(installed.lastOptions("1"),
                  tools::encodeOptionsFile({"-Dother=1", "-Dguest.property=remembered"}));
  launch();
  EXPECT_EQ(0, result.status);
  EXPECT_TRUE(printed("[Guest] property remembered"));
}

// A runtime whose "java" records its arguments; its JVM lies in it for good, not through a link, so
// that Java takes it for its home.
static void makeRecordingRuntime(const std::string& folder) {
  const fs::path real = test::testRuntime();
  test::makeRuntime(folder);
  fs::remove(folder + "/lib");
  fs::create_directories(folder + "/lib");
  for (const auto& entry : fs::directory_iterator(real / "lib")) {
    const std::string name = entry.path().filename();
    if (name == "server") {
      fs::copy(entry.path(), folder + "/lib/server", fs::copy_options::recursive);
    } else {
      fs::create_symlink(entry.path(), folder + "/lib/" + name);
    }
  }
  fs::remove(folder + "/bin/java");
  fs::copy_file(test::fakeJava(), folder + "/bin/java");
}

// The updater in a JVM that believes to be on a system of this name.
class UpdatersChild : public Updater {
 protected:
  // Starts the application, which must fork, and returns the options of its process for the Dock.
  Texts dockOptions(const std::string& system, tools::LaunchFile file) {
    file.mustFork = true;
    installGuest(file);
    makeRecordingRuntime(installed.component("Mac64JRE", "1"));
    test::writeFile(installed.lastOptions("1"), tools::encodeOptionsFile({"-Dos.name=" + system}));
    environment["FAKE_JAVA_RECORD"] = folder / "child";
    result = runDriver("Mac64JRE", {"--from", program()}, {program()});
    EXPECT_EQ(0, result.status) << result.out << result.err;
    Texts found;
    for (const std::string& word : test::endedTexts(test::readFile(folder / "child"))) {
      if (word.rfind("-Xdock", 0) == 0) {
        found.push_back(word);
      }
    }
    return found;
  }

  std::string bundle() const { return folder / "Sample.app/Contents"; }
  std::string program() const { return bundle() + "/MacOS/Sample"; }
};

TEST_F(UpdatersChild, OnAMacHasTheApplicationsNameAndIconInTheDock) {
  tools::LaunchFile file;
  file.icon = "own.icns";
  test::writeFile(appFolder("3-complete") + "/own.icns", "");
  test::writeFile(bundle() + "/Resources/Sample.icns", "");
  EXPECT_EQ((Texts{"-Xdock:name=Sample", "-Xdock:icon=" + appFolder("3-complete") + "/own.icns"}),
            dockOptions("Mac OS X", file));
}

TEST_F(UpdatersChild, OnAMacWithoutAnIconOfItsOwnHasTheBundles) {
  tools::LaunchFile file;
  file.icon = "missing.icns";
  test::writeFile(bundle() + "/Resources/Sample.icns", "");
  EXPECT_EQ((Texts{"-Xdock:name=Sample", "-Xdock:icon=" + bundle() + "/Resources/Sample.icns"}),
            dockOptions("Mac OS X", file));
}

// Others belong to the types of documents that the application opens.
TEST_F(UpdatersChild, OnAMacHasTheIconThatIsNamedAfterTheProgramAmongSeveral) {
  for (const char* name : {"document-1.icns", "Sample.icns", "document-2.icns", "Zebra.icns"}) {
    test::writeFile(bundle() + "/Resources/" + name, "");
  }
  EXPECT_EQ((Texts{"-Xdock:name=Sample", "-Xdock:icon=" + bundle() + "/Resources/Sample.icns"}),
            dockOptions("Mac OS X", {}));
}

TEST_F(UpdatersChild, OnAMacHasTheFirstOfIconsWithOtherNames) {
  for (const char* name : {"c.icns", "a.icns", "b.icns"}) {
    test::writeFile(bundle() + "/Resources/" + name, "");
  }
  EXPECT_EQ((Texts{"-Xdock:name=Sample", "-Xdock:icon=" + bundle() + "/Resources/a.icns"}),
            dockOptions("Mac OS X", {}));
}

TEST_F(UpdatersChild, OnAMacWithoutAnyIconHasTheNameAlone) {
  EXPECT_EQ((Texts{"-Xdock:name=Sample"}), dockOptions("Mac OS X", {}));
}

TEST_F(UpdatersChild, OnAnotherSystemHasNoOptionsForADock) {
  EXPECT_EQ((Texts{}), dockOptions("Linux", {}));
}

static double secondsSince(std::chrono::steady_clock::time_point start) {
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

TEST_F(Updater, StartsTheApplicationWhenTheSplashsTimeIsOver) {
  installSample("3-complete");
  setStatic("min_splash_ms", "1500");
  const auto start = std::chrono::steady_clock::now();
  launch();
  EXPECT_GE(secondsSince(start), 1.5);
  EXPECT_TRUE(printed("Sample version 3 on Java 17"));
}

TEST_F(Updater, WaitsForNoSplashWithoutAUserInterface) {
  installSample("3-complete");
  setStatic("min_splash_ms", "600000");
  setStatic("show_no_ui", "true");
  launch();
  EXPECT_TRUE(printed("Sample version 3 on Java 17"));
}

TEST_F(Updater, GoesOnWhereTheSplashCannotBeShown) {
  installSample("3-complete");
  test::writeFile(guFolder() + "/nativesplash.png", "no image");
  launch();
  EXPECT_NE(std::string::npos, result.err.find("[Updater] No splash: "));
  EXPECT_TRUE(printed("Sample version 3 on Java 17"));
}

TEST_F(Updater, OfAnOnlineInstallerThatIsGoneFetchesNothingAndSaysWhy) {
  setStatic("wrapper_app_version", "");
  options.insert(options.end(), {"--update-url", "D", "--dynamic-url", "http://127.0.0.1/dyn/"});
  launch();
  expectRefusal(
      "No version of Sample is installed in " + master() +
      ", and none can be fetched from http://127.0.0.1/dyn/. The installer /opt/Sample is "
      "no longer there: nothing can be verified or installed.");
}

TEST_F(Updater, OfAnOnlineInstallerWithoutAnyUrlSaysSo) {
  launch();
  expectRefusal("No version of Sample is installed in " + master() +
                ", and its installer carries none. It would have to be fetched from an update URL, "
                "of which none is set");
}

TEST_F(Updater, OfAnOfflineInstallerSaysThatTheInstallationIsIncomplete) {
  setStatic("wrapper_app_version", "3");
  installSample("3");
  launch();
  expectRefusal("No complete version of Sample is installed in " + master());
}

TEST_F(Updater, SaysThatTheApplicationsLaunchFileIsMissing) {
  installSample("3-complete");
  fs::remove(appFolder("3-complete") + "/QuorvaneLaunch");
  launch();
  expectRefusal("The launch file cannot be read: ");
}

TEST_F(Updater, SaysThatTheApplicationsLaunchFileIsCutShort) {
  installSample("3-complete");
  test::writeFile(appFolder("3-complete") + "/QuorvaneLaunch", "6\0Main\0"s);
  launch();
  expectRefusal("The launch file " + appFolder("3-complete") + "/QuorvaneLaunch is cut short.");
}

TEST_F(Updater, SaysThatTheApplicationsLaunchFileIsNone) {
  installSample("3-complete");
  test::writeFile(appFolder("3-complete") + "/QuorvaneLaunch", "six\0Main\0"s);
  launch();
  expectRefusal("The launch file " + appFolder("3-complete") +
                "/QuorvaneLaunch holds \"six\" where a number belongs.");
}

TEST_F(Updater, SaysThatTheApplicationsMainClassIsMissing) {
  tools::LaunchFile file;
  file.mainClass = "guest.Missing";
  installGuest(file);
  launch();
  expectRefusal(
      "The application's main class cannot be run: java.lang.ClassNotFoundException: "
      "guest.Missing");
}

TEST_F(Updater, DeletesPropertiesFilesOfEarlierDaysOnly) {
  installSample("3-complete");
  const std::string old = guFolder() + "/QVLaunchProperties-1-2";
  const std::string young = guFolder() + "/QVLaunchProperties-2-2";
  test::writeFile(old, "");
  test::writeFile(young, "");
  const time_t twoDaysAgo = time(nullptr) - 2L * 24 * 60 * 60;
  const utimbuf times{twoDaysAgo, twoDaysAgo};
  ASSERT_EQ(0, utime(old.c_str(), &times));
  launch();
  EXPECT_FALSE(test::exists(old));
  EXPECT_TRUE(test::exists(young));
}

struct Requirement {
  std::string name;
  std::string version;
  int status;
};

// How the test's name shows it.
static void PrintTo(const Requirement& value, std::ostream* out) {
  *out << value.name;
}

class UpdaterProbe : public Updater, public testing::WithParamInterface<Requirement> {};

INSTANTIATE_TEST_SUITE_P(Versions, UpdaterProbe,
                         testing::Values(Requirement{"None", "", 72}, Requirement{"Eight", "8", 72},
                                         Requirement{"OldStyleEight", "1.8.0_151", 72},
                                         Requirement{"Same", "17", 72},
                                         Requirement{"Newer", "18", 1},
                                         Requirement{"Unreachable", "999999", 1}),
                         [](const auto& info) { return info.param.name; });

TEST_P(UpdaterProbe, EndsWithStatus72WhereTheRuntimeWillDo) {
  setStatic("java_version", GetParam().version);
  result = runDriver(QUORVANE_TEST_RUNTIME "/bin/java", {"--class", "1"}, {"/opt/Sample"});
  lines = test::logLinesOf(result.out);
  EXPECT_TRUE(printed("[Driver] Result " + std::to_string(GetParam().status))) << result.err;
}

// What the updater says to a wrong start, without a launch.
static test::Result runJava(const Texts& words) {
  test::Command command;
  command.arguments = {QUORVANE_TEST_RUNTIME "/bin/java", "-cp", kUpdater + "/updater.jar"};
  command.arguments.insert(command.arguments.end(), words.begin(), words.end());
  return test::run(command);
}

TEST(UpdaterStart, WithoutAPropertiesFileIsRefused) {
  const test::Result result = runJava({"org.example.updater.GenericUpdater"});
  EXPECT_EQ(1, result.status);
  EXPECT_EQ(
      "[Updater] Cannot start the application. The first argument must name the launch properties "
      "file.\n",
      result.err);
}

TEST(UpdaterStart, WithAPropertiesFileThatIsMissingIsRefused) {
  const test::Result result = runJava({"org.example.updater.GenericUpdater", "/no/such/file"});
  EXPECT_EQ(1, result.status);
  EXPECT_EQ(0u, result.err.find("[Updater] Cannot start the application. The launch properties "
                                "cannot be read: "));
}

TEST(UpdaterStart, OfTheProbeWithoutAPropertiesFileIsRefused) {
  EXPECT_EQ(1, runJava({"org.example.updater.CompatibilityProbe"}).status);
}

TEST(SampleClasses, AreThoseOfJava8) {
  constexpr char kJava8 = 52;
  for (const std::string& path :
       {kUpdater + "/classes/org/example/updater/GenericUpdater.class",
        kUpdater + "/classes/org/example/updater/CompatibilityProbe.class",
        kApp + "/classes/org/example/app/SampleApp.class"}) {
    EXPECT_EQ(kJava8, test::readFile(path)[7]) << path;
  }
}

// On the development kit, whose runtime has windows.
TEST(SampleApp, ShowsItsWindowAndClosesItInTime) {
  test::Command command;
  command.arguments = {QUORVANE_SOURCE "/scripts/with-display",
                       QUORVANE_JDK_JAVA,
                       "-cp",
                       kApp + "/app.jar",
                       "org.example.app.SampleApp",
                       "--close-after",
                       "300"};
  command.seconds = 120;
  const test::Result result = test::run(command);
  EXPECT_EQ(0, result.status);
  EXPECT_EQ("", result.err);
  EXPECT_EQ(0u, result.out.find("Sample version of the source tree on Java "));
}
