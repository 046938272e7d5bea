#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/blackbox/pack/small_project.h"
#include "tests/support/files.h"
#include "tests/support/jar_bytes.h"
#include "tools/formats/launch_file_writer.h"

// The main class of an application, and what the manifest of its jar asks for.

using Texts = std::vector<std::string>;

namespace {

const char kMain[] = "org.example.Main";
const std::string kMainClassBundle = test::bundleIn("dist", "offline");

class PackMainClass : public testing::Test {
 protected:
  void writeJar(const std::string& path, const std::string& bytes) {
    test::writeFile(project_ / path, bytes);
  }

  void expectRefusal(const std::string& message, test::Place place = test::Place::here()) {
    project_.build().fails(message, place).leavesNo(kMainClassBundle, place);
  }

  // Builds, and returns the lines that tell something about the content.
  Texts remarks() {
    const test::Transcript result = project_.build();
    result.ends(0);
    Texts lines;
    for (const std::string& line : test::linesOf(result.out)) {
      if (line.rfind("warning: ", 0) == 0 || line.rfind("note: the manifest", 0) == 0 ||
          line.rfind("note: native", 0) == 0) {
        lines.push_back(line);
      }
    }
    return lines;
  }

  // The JVM options of the application that was built.
  Texts options() {
    const std::string folder = project_.extracted("dist/site/Quorvane-Small App-3-archive.p2.l2");
    return tools::decodeLaunchFile(test::readFile(folder + "/QuorvaneLaunch")).jvmOptions;
  }

  // The project's runtime is of this version.
  void useJava(const std::string& version) {
    test::writeFile(project_ / "runtime/release", "JAVA_VERSION=\"" + version + "\"\n");
  }

  test::SmallProject project_;
};

TEST_F(PackMainClass, ThatNoJarContainsIsRefused) {
  writeJar("app/main.jar", test::jarOfClass("org.example.Other"));
  expectRefusal(
      "quorvane.toml: [application] main_class is \"org.example.Main\", which the class path does "
      "not contain: lib/other.jar, main.jar");
}

TEST_F(PackMainClass, ThatOnlyAJarOutsideOfTheClassPathContainsIsRefused) {
  project_.replace("folder = \"app\"", "folder = \"app\"\nclass_path = [\"lib/other.jar\"]");
  expectRefusal(
      "quorvane.toml: [application] main_class is \"org.example.Main\", which the class path does "
      "not contain: lib/other.jar");
}

TEST_F(PackMainClass, ThatTheOneJarDoesNotContainIsRefused) {
  project_.replace("folder = \"app\"", "jar = \"app/lib/other.jar\"");
  expectRefusal(
      "quorvane.toml: [application] main_class is \"org.example.Main\", which the class path does "
      "not contain: other.jar");
}

TEST_F(PackMainClass, ThatTheFoldersOwnLaunchFileNamesIsLookedForToo) {
  project_.replace("main_class = \"org.example.Main\"\n", "");
  tools::LaunchFile launch;
  launch.mainClass = "org.example.Absent";
  launch.appName = "Small App";
  launch.classPath = {"main.jar"};
  test::writeFile(project_ / "app/QuorvaneLaunch", tools::encodeLaunchFile(launch));
  expectRefusal(
      "app/QuorvaneLaunch: the main class is \"org.example.Absent\", which the class path does not "
      "contain: main.jar");
  launch.mainClass = kMain;
  test::writeFile(project_ / "app/QuorvaneLaunch", tools::encodeLaunchFile(launch));
  EXPECT_EQ(Texts{}, remarks());
}

TEST_F(PackMainClass, InAJarThatIsDamagedNamesTheJar) {
  writeJar("app/main.jar", "PK and no more");
  expectRefusal("app/main.jar is not a jar, or is damaged; build it or copy it again");
}

TEST_F(PackMainClass, MayBeInAFolderOfClasses) {
  project_.replace("folder = \"app\"", "folder = \"app\"\nclass_path = [\"classes\"]");
  writeJar("app/classes/org/example/Main.class", "a class");
  EXPECT_EQ(Texts{}, remarks());
}

TEST_F(PackMainClass, MayBeInAJarThatAManifestNames) {
  writeJar("app/real one.jar", test::jarOfClass(kMain));
  writeJar(
      "app/lib/path.jar",
      test::jarOfClass("org.example.Path", "Class-Path: ../real%20one.jar ../app path.jar\r\n"));
  project_.replace("folder = \"app\"", "folder = \"app\"\nclass_path = [\"lib/path.jar\"]");
  EXPECT_EQ(Texts{"warning: the manifest of lib/path.jar has ../app in its class path, which is "
                  "missing"},
            remarks());
}

TEST_F(PackMainClass, MayBeInAJarThatTheJdkMade) {
  test::writeFile(project_ / "content/org/example/Main.class", test::noise(20000));
  test::writeFile(project_ / "manifest", "Add-Opens: java.base/java.lang\n");
  ASSERT_TRUE(test::runShell(project_.path(),
                             "jar --create --file app/main.jar --manifest manifest -C content .")
                  .succeeded());
  EXPECT_EQ(Texts{}, remarks());
  EXPECT_EQ(Texts{"--add-opens=java.base/java.lang=ALL-UNNAMED"}, options());
}

TEST_F(PackMainClass, ThatAnInstallersUpdaterLacksIsFoundByVerify) {
  writeJar("updater/updater.jar", test::jarOfClass("org.example.Other"));
  ASSERT_TRUE(project_.build().succeeded());
  project_.pack({"verify", kMainClassBundle})
      .fails(std::string(kMainClassBundle) +
             " would not work:\n  updater: its launch file names the main class "
             "org.example.Updater, which its class path does not contain");
}

TEST_F(PackMainClass, MissingClassPathEntriesOfItsManifestAreWarnings) {
  writeJar("app/main.jar", test::jarOfClass(kMain, "Class-Path: lib/other.jar lib/none.jar\r\n"));
  EXPECT_EQ(Texts{"warning: the manifest of main.jar has lib/none.jar in its class path, which is "
                  "missing"},
            remarks());
  project_.pack({"verify", kMainClassBundle})
      .ends(0)
      .mentions(
          "warning: application: the manifest of main.jar has lib/none.jar in its class path, "
          "which is missing\n");
}

TEST_F(PackMainClass, WithAManifestThatOpensPackagesIsLaunchedWithTheseOptions) {
  project_.replace("[updater]",
                   "jvm_options = [\"-Da=b\", \"--add-opens=java.base/java.io=ALL-UNNAMED\"]\n"
                   "[updater]");
  writeJar("app/main.jar",
           test::jarOfClass(kMain,
                            "Add-Exports: java.base/sun.misc java.desktop/sun.a\r\n wt\r\n"
                            "Add-Opens: java.base/java.io java.base/java.lang\r\n"
                            "Enable-Native-Access: ALL-UNNAMED\r\n"));
  EXPECT_EQ(Texts{}, remarks());
  EXPECT_EQ(
      (Texts{"-Da=b", "--add-opens=java.base/java.io=ALL-UNNAMED",
             "--add-exports=java.base/sun.misc=ALL-UNNAMED",
             "--add-exports=java.desktop/sun.awt=ALL-UNNAMED",
             "--add-opens=java.base/java.lang=ALL-UNNAMED", "--enable-native-access=ALL-UNNAMED"}),
      options());
}

TEST_F(PackMainClass, OnAJavaWithoutModulesIsLaunchedWithoutTheirOptions) {
  writeJar("app/main.jar", test::jarOfClass(kMain,
                                            "Add-Exports: java.base/sun.misc\r\n"
                                            "Enable-Native-Access: ALL-UNNAMED\r\n"));
  useJava("1.8.0_452");
  EXPECT_EQ(Texts{}, remarks());
  EXPECT_EQ(Texts{}, options());
  useJava("11.0.2");
  EXPECT_EQ(Texts{}, remarks());
  EXPECT_EQ(Texts{"--add-exports=java.base/sun.misc=ALL-UNNAMED"}, options());
}

TEST_F(PackMainClass, OfAnotherJarThanTheOneWithTheManifestTakesNothingFromIt) {
  writeJar("app/lib/other.jar",
           test::jarOfClass("org.example.Other", "Add-Exports: java.base/sun.misc\r\n"));
  EXPECT_EQ(Texts{}, remarks());
  EXPECT_EQ(Texts{}, options());
}

TEST_F(PackMainClass, WithAManifestThatAsksInVainIsTold) {
  writeJar("app/main.jar", test::jarOfClass(kMain,
                                            "Launcher-Agent-Class: org.example.Agent\r\n"
                                            "SplashScreen-Image: splash.png\r\n"));
  EXPECT_EQ((Texts{"note: the manifest of main.jar has Launcher-Agent-Class, and no agent is "
                   "started",
                   "note: the manifest of main.jar has SplashScreen-Image, which is not shown; "
                   "'splash' in [installer] names the installer's image"}),
            remarks());
}

TEST_F(PackMainClass, WithALaunchFileThatLacksWhatTheManifestAsksForIsTold) {
  project_.replace("main_class = \"org.example.Main\"\n", "");
  writeJar("app/main.jar", test::jarOfClass(kMain, "Add-Exports: java.base/sun.misc\r\n"));
  tools::LaunchFile launch;
  launch.mainClass = kMain;
  launch.appName = "Small App";
  launch.classPath = {"main.jar"};
  test::writeFile(project_ / "app/QuorvaneLaunch", tools::encodeLaunchFile(launch));
  EXPECT_EQ(Texts{"note: the manifest of main.jar asks for "
                  "--add-exports=java.base/sun.misc=ALL-UNNAMED, and app/QuorvaneLaunch does not"},
            remarks());
}

TEST_F(PackMainClass, BesideJarsWithNativeLibrariesTellsThatTheyAreNotChecked) {
  writeJar("app/lib/other.jar", test::jarOf({{"natives/libx.so", "x"}}));
  EXPECT_EQ(Texts{"note: native libraries in jars are not checked: lib/other.jar"}, remarks());
}

}  // namespace
