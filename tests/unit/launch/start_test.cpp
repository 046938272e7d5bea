#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <string>
#include <thread>
#include <vector>

#include "support/log/logging.h"
#include "support/process/process_start.h"
#include "tests/unit/launch/launching.h"

using Texts = std::vector<std::string>;

class ApplicationStart : public Launching {
 protected:
  ApplicationStart() { scene.installFakeRuntime(scene.runtime()); }

  // The command line without the properties file's path, which differs from launch to launch.
  Texts startedWithoutProperties() const {
    Texts started = startedWith();
    const std::string prefix = scene.appFolder() + "/QVLaunchProperties-";
    for (std::string& text : started) {
      text = text.rfind(prefix, 0) == 0 ? "(properties)" : text;
    }
    return started;
  }
};

TEST_F(ApplicationStart, ByForcedSpawnTriesNoJni) {
  const Launched launched = launch();
  EXPECT_EQ(0, launched.result);
  EXPECT_TRUE(test::containsInOrder(
      launched.lines,
      {"[Extractor] This is a newer extractor... launchclass is 0",
       "[Extractor] JRE folder is " + scene.runtime(), "[Extractor] Attempting spawn launch",
       "+++ Start: Spawn launch", "[Utils] Closing logging file."}));
  EXPECT_EQ(0, std::count(launched.lines.begin(), launched.lines.end(), "+++ Start: JNI Launch"));
}

TEST_F(ApplicationStart, ThatFailsByJniFollowsAsAProcessWithTheSameArguments) {
  scene.launchFile.maximumHeapMegabytes = 64;
  scene.launchFile.classPath = {"a.jar", "b.jar"};
  scene.launchFile.arguments = {"extra one", ""};
  arguments = {"wrapper", "a\nb", "\"quoted\"", "Größe 漢字", " "};
  scene.writeOptionsFile({"-Dlast=1"});
  spawned = false;
  const Launched launched = launch();
  EXPECT_EQ(0, launched.result);
  const std::string folder = scene.appFolder();
  EXPECT_EQ(
      (Texts{scene.runtime() + "/bin/Sample", "-Xmx64m", "-cp",
             folder + "/a.jar:" + folder + "/b.jar", "-Dlast=1", "com.sample.Main", "(properties)",
             "extra one", "", "wrapper", "a\nb", "\"quoted\"", "Größe 漢字", " "}),
      startedWithoutProperties());
  EXPECT_TRUE(test::containsInOrder(
      launched.lines, {"[Extractor] Force spawn is 0 so attempting to launch via JNI",
                       "+++ Start: JNI Launch", "[JNILaunch] [ERROR] Unable to load JRE library!",
                       "[Extractor] Return code for JNI launch was 1", "--- End: JNI Launch",
                       "[Extractor] JNI launch failed. Attempting legacy spawn instead",
                       "[Extractor] Attempting spawn launch", "+++ Start: Spawn launch",
                       "[Utils] Closing logging file."}));
}

TEST_F(ApplicationStart, ByAProcessPassesNoOptionsThatJavaWouldRefuse) {
  scene.writeOptionsFile({"-XstartOnFirstThread", "-Dlast=1", "-Xdock:name=Sample"});
  EXPECT_EQ(0, launch().result);
  const Texts started = startedWith();
  EXPECT_EQ(1, std::count(started.begin(), started.end(), "-Dlast=1"));
  EXPECT_EQ(0, std::count(started.begin(), started.end(), "-XstartOnFirstThread"));
  EXPECT_EQ(0, std::count(started.begin(), started.end(), "-Xdock:name=Sample"));
  const Texts properties = written();
  EXPECT_EQ(1, std::count(properties.begin(), properties.end(), "-XstartOnFirstThread"));
}

TEST_F(ApplicationStart, LoadsTheRuntimesBundleBesideItsFolder) {
  const Launched launched = launch();
  EXPECT_TRUE(test::containsInOrder(
      launched.lines,
      {"[Extractor] JRE folder is " + scene.runtime(),
       "[BundleLoader] Creating jre path URL for path " + scene.runtime() + ".plugin",
       "[Extractor] Attempting spawn launch"}));
}

TEST_F(ApplicationStart, BySpawnGivesTheApplicationTheDefaultActionForSigpipe) {
  const std::string status = scene / "status";
  test::writeFile(scene.runtime() + "/bin/Sample",
                  "#!/bin/sh\ngrep SigIgn /proc/self/status > '" + status + ".new'\nmv '" + status +
                      ".new' '" + status + "'\n",
                  0755);
  beforeLaunch = [] { beginProcess(); };
  EXPECT_EQ(0, launch().result);
  for (int i = 0; i < 6000 && !test::exists(status); ++i) {
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  const std::string line = test::readFile(status);
  EXPECT_EQ(0u, strtoull(line.c_str() + 7, nullptr, 16) >> (SIGPIPE - 1) & 1) << line;
}

TEST_F(ApplicationStart, ThatCannotBeSpawnedReturnsTheErrorNumber) {
  const std::string noProgram = scene.runtime() + "/release";
  test::writeFile(noProgram, "", 0644);
  test::writeFile(scene.runtime() + "/bin/Sample", "#!" + noProgram + "\n", 0755);
  const Launched launched = launch();
  EXPECT_EQ(EACCES, launched.result);
  EXPECT_EQ("Launch Error " + std::to_string(EACCES) + ".", errorsIn(launched.lines).back());
}

TEST_F(ApplicationStart, ClosesTheLogFileFirst) {
  const std::string log = scene / "log";
  beforeLaunch = [log] { setFileToLogTo(fopen(log.c_str(), "w")); };
  launch();
  const Texts lines = test::logLinesOf(test::readFile(log));
  ASSERT_FALSE(lines.empty());
  EXPECT_EQ("[Utils] Closing logging file.", lines.back());
}

TEST_F(ApplicationStart, LogsEveryArgumentWithItsNumber) {
  arguments = {"wrapper", "two words"};
  const Launched launched = launch();
  const std::string properties = scene.propertiesFiles().front();
  EXPECT_TRUE(test::containsInOrder(
      launched.lines,
      {"+++ Start: Launching",
       "[Extractor] Launching 'Quorvane-Quorvane-7-complete' from master folder '" +
           scene.master() + "' of class 0 using JRE 'Mac64JRE'",
       "[Extractor] Building classpath", "[Extractor] Appending 2 command line args",
       "[Extractor] Executable: " + scene.runtime() + "/bin/Sample",
       "[Extractor] Argument 0: " + scene.runtime() + "/bin/Sample", "[Extractor] Argument 1: -cp",
       "[Extractor] Argument 2: ", "[Extractor] Argument 3: com.sample.Main",
       "[Extractor] Argument 4: " + properties, "[Extractor] Argument 5: wrapper",
       "[Extractor] Argument 6: two words"}));
}

TEST_F(ApplicationStart, ThroughLaunchAppIsTheSame) {
  call = [this](int argc, char** argv) {
    return launchApp(scene.master().c_str(), properties.data(), argc, argv,
                     scene.appFolderName.c_str(), "D", "http://127.0.0.1/", "Mac64JRE", nullptr,
                     true, nullptr, "/opt/other", true, nullptr);
  };
  EXPECT_EQ(0, launch().result);
  EXPECT_EQ("/opt/other", test::propertyIn(written(), "qvstat_launched_from_dynprops"));
  EXPECT_EQ("http://127.0.0.1/", test::propertyIn(written(), "qvdyna_update_url"));
  EXPECT_EQ(scene.runtime() + "/bin/Sample", startedWith()[0]);
}

struct ProbeEnd {
  std::string status;  // of the fake Java
  int result;
  bool compatible;
};

// How the test's name shows it.
static void PrintTo(const ProbeEnd& value, std::ostream* out) {
  *out << value.status;
}

class CompatibilityProbe : public Launching, public testing::WithParamInterface<ProbeEnd> {
 protected:
  CompatibilityProbe() { useProbe(); }
};

INSTANTIATE_TEST_SUITE_P(Ends, CompatibilityProbe,
                         testing::Values(ProbeEnd{"72", 72, true}, ProbeEnd{"0", 0, false},
                                         ProbeEnd{"3", 3, false}, ProbeEnd{"255", 255, false},
                                         ProbeEnd{"killed", -1, false}),
                         [](const auto& info) { return "Status" + info.param.status; });

TEST_P(CompatibilityProbe, ReturnsItsExitStatusOrMinusOne) {
  fakeStatus = GetParam().status;
  arguments = {"wrapper"};
  const Launched launched = launch();
  EXPECT_EQ(GetParam().result, launched.result);
  EXPECT_EQ((Texts{test::fakeJava(), "-cp", "", "com.sample.Probe", scene.propertiesFiles().front(),
                   "wrapper"}),
            startedWith());
  EXPECT_TRUE(test::containsInOrder(
      launched.lines, {"[Extractor] Checking for existing system JRE " + test::fakeJava(),
                       "[Extractor] This is a newer extractor... launchclass is 1",
                       "[Utils] Closing logging file."}));
}

TEST_P(CompatibilityProbe, IsCompatibleExactlyWithStatus72) {
  fakeStatus = GetParam().status;
  call = [this](int argc, char** argv) {
    return checkAppJreCompatibility(scene.master().c_str(), properties.data(), argc, argv,
                                    scene.appFolderName.c_str(), updateUrl.c_str(), nullptr,
                                    jre.c_str(), "/opt/wrapper")
               ? 1
               : 0;
  };
  EXPECT_EQ(GetParam().compatible ? 1 : 0, launch().result);
}

TEST_F(ApplicationStart, OfAProbeThatCannotBeSpawnedReturnsMinusOne) {
  useProbe();
  jre = scene / "missing/java";
  const Launched launched = launch();
  EXPECT_EQ(-1, launched.result);
  EXPECT_TRUE(test::containsInOrder(launched.lines, {"Launch Error 2."}));
}

TEST_F(ApplicationStart, OfAnotherClassBuildsEverythingAndStartsNothing) {
  launchClass = 2;
  scene.writeOptionsFile({"-Dlast=1"});
  arguments = {"wrapper"};
  const Launched launched = launch();
  EXPECT_EQ(-1, launched.result);
  EXPECT_FALSE(wasStarted());
  EXPECT_EQ((Texts{"java"}), test::namesIn(scene.runtime() + "/bin"));
  EXPECT_TRUE(test::containsInOrder(
      launched.lines,
      {"Not a private JRE (no need to check for LSO file)", "[Extractor] Executable: (null)",
       "[Extractor] Argument 0: (null)", "[Extractor] Argument 1: -cp",
       "[Extractor] Argument 2: ", "[Extractor] Argument 3: (null)",
       "[Extractor] Argument 4: " + scene.propertiesFiles().front(),
       "[Extractor] Argument 5: wrapper",
       "[Extractor] This is a newer extractor... launchclass is 2"}));
}

TEST_F(ApplicationStart, OfVerpatchHandsItTheVersionResources) {
  fakeStatus = "5";
  call = [](int, char**) {
    callVerPatchOn(test::fakeJava().c_str(), "/opt/Sample App.exe", "Sample App");
    return 0;
  };
  const Launched launched = launch();
  EXPECT_EQ((Texts{test::fakeJava(),
                   "/opt/Sample App.exe",
                   "4.0.0.0",
                   "/s",
                   "description",
                   "Sample App",
                   "/s",
                   "ProductName",
                   "Sample App",
                   "/pv",
                   "4.0.0.0",
                   "/s",
                   "LegalCopyright",
                   " ",
                   "/s",
                   "Company",
                   " ",
                   "/s",
                   "FullVersion",
                   "4.0.0.0"}),
            startedWith());
  EXPECT_EQ("[VerPath] Returned 5", launched.lines.back());
}
