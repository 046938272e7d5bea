// Names, versions, URLs and paths that a shell would run, in every place that a command is made of
// or run in: a program on the PATH that leaves a trace is never started.

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <functional>
#include <iterator>
#include <map>
#include <string>
#include <vector>

#include "tests/blackbox/installer/online.h"
#include "tests/support/product_system.h"

namespace fs = std::filesystem;
using test::Installer;

namespace {

// "qvcanary" is the program that leaves the trace. The first seven are tried in every test run.
const char* const kTexts[] = {
    "a'b\"c$(qvcanary)`qvcanary`; qvcanary; ",
    "'; qvcanary; '",
    "\"; qvcanary; \"",
    "a\nqvcanary\n",
    "-rf",
    "%s%n%n%n",
    "\xC3\xA4\xE2\x82\xAC\xE6\x97\xA5",
    "$(qvcanary)",
    "`qvcanary`",
    "a'b$(qvcanary)",
    "a\"b`qvcanary`",
    "a; qvcanary",
    "a && qvcanary",
    "a | qvcanary",
    "--version",
    "> qvcanary.trace",
    "*",
    "~",
    "a b",
    "\\",
    "\xFF\xFE",
};
constexpr size_t kTriedAlways = 7;

class Shell : public testing::Test {
 protected:
  // A fresh installer for every text: what one leaves is not met by the next.
  struct Scene {
    Scene() {
      test::writeFile(installer / "bin/qvcanary", "#!/bin/sh\n: > '" + canary() + "'\n", 0755);
      installer.updater[1] = test::nestedRecord("updater", Installer::updaterRecords());
    }
    std::string canary() const { return installer / "canary"; }

    test::Result run(const std::vector<std::string>& words = {}) {
      installer.write();
      return runWritten(words);
    }

    test::Result runWritten(const std::vector<std::string>& words = {}) {
      test::Command command = installer.command(words);
      command.environment["PATH"] = path + (installer / "bin") + ":/usr/bin:/bin";
      command.environment.insert(environment.begin(), environment.end());
      return test::run(command);
    }

    Installer installer;
    std::string path;  // in front of the other folders
    std::map<std::string, std::string> environment;
  };

  // Tries every text; `use` puts it where it belongs and runs the installer.
  static void tryAll(const std::function<test::Result(Scene*, const std::string&)>& use) {
    const char* wanted = getenv("QUORVANE_SHELL_TEXTS");
    const bool all = wanted != nullptr && strcmp(wanted, "all") == 0;
    for (size_t i = 0; i < (all ? std::size(kTexts) : kTriedAlways); ++i) {
      const std::string text = kTexts[i];
      SCOPED_TRACE(text);
      Scene scene;
      const test::Result result = use(&scene, text);
      EXPECT_FALSE(test::exists(scene.canary())) << result.out;
      EXPECT_FALSE(test::exists(scene.installer / "qvcanary.trace"));
      EXPECT_FALSE(result.timedOut);
      EXPECT_EQ(0, result.signal) << result.out;
      EXPECT_TRUE(result.status == 0 || result.status == 1) << result.status << result.out;
      EXPECT_EQ(result.status == 0, scene.installer.launched() || isOnlyPrepared(result))
          << result.out;
    }
  }

  static bool isOnlyPrepared(const test::Result& result) {
    return mentions(result, "Will not show UI or launch an app\n");
  }

  static std::string javaHome(const Scene& scene, const std::string& text) {
    const std::string home = scene.installer / (text + "/jdk1.8.0_1");
    test::writeFile(home + "/bin/java", javaScript(72), 0755);
    test::writeFile(home + "/bin/unpack200", "#!/bin/sh\n", 0755);
    test::writeFile(home + "/" + test::jvmLibraryPlace(), test::readFile(QUORVANE_FAKE_JVM));
    return home;
  }
};

}  // namespace

// Without this a canary that never sings would let every other test pass.
TEST_F(Shell, RunsTheProgramThatLeavesATraceWhereAShellIsGivenTheTexts) {
  for (const char* text : {"$(qvcanary)", "`qvcanary`", "a; qvcanary", "a\nqvcanary\n"}) {
    SCOPED_TRACE(text);
    Scene scene;
    test::Command command = scene.installer.command();
    command.arguments = {"/bin/sh", "-c", text};
    command.environment["PATH"] = (scene.installer / "bin") + ":/usr/bin:/bin";
    test::run(command);
    EXPECT_TRUE(test::exists(scene.canary()));
  }
}

TEST_F(Shell, RunsNothingOfAnApplicationName) {
  tryAll([](Scene* scene, const std::string& text) {
    scene->installer.tail.appName = text;
    const test::Result result = scene->run();
    // Where it is installed the master folder's name is another one.
    EXPECT_EQ(0, result.status) << result.out;
    return result;
  });
}

TEST_F(Shell, RunsNothingOfTheVersions) {
  tryAll([](Scene* scene, const std::string& text) {
    scene->installer.tail.appVersion = "3" + text;
    scene->installer.tail.jreVersion = "1407" + text;
    scene->installer.tail.guVersion = "5" + text;
    return scene->run();
  });
}

TEST_F(Shell, RunsNothingOfTheRuntimesName) {
  tryAll([](Scene* scene, const std::string& text) {
    scene->installer.properties = {{"jre_name", text}};
    return scene->run();
  });
}

TEST_F(Shell, RunsNothingOfTheOverriddenRuntimesName) {
  tryAll([](Scene* scene, const std::string& text) {
    scene->installer.installed.setRuntimeName(text);
    return scene->run();
  });
}

TEST_F(Shell, RunsNothingOfTheOtherTailFieldsAndProperties) {
  tryAll([](Scene* scene, const std::string& text) {
    test::Tail& tail = scene->installer.tail;
    tail.minSplashMs = tail.canOverrideSplash = tail.silentParameter = text;
    tail.requiredJavaVersion = tail.installType = text;
    tail.publicKey = text;
    scene->installer.properties = {
        {text, text}, {"splash_image", text}, {"splash_buffer", text}, {"force_spawn", text}};
    return scene->run({text});
  });
}

TEST_F(Shell, RunsNothingOfAStaticUpdateUrl) {
  tryAll([](Scene* scene, const std::string& text) {
    scene->installer.makeOnline("http://127.0.0.1:9/" + text);
    return scene->run();
  });
}

TEST_F(Shell, RunsNothingOfAWholeDynamicUpdateUrl) {
  tryAll([](Scene* scene, const std::string& text) {
    scene->installer.makeOnline("D");
    scene->installer.properties = {{"update_url", text}};
    return scene->run();
  });
}

TEST_F(Shell, RunsNothingOfTheVersionOnTheUpdateSite) {
  tryAll([](Scene* scene, const std::string& text) {
    UpdateSite site;
    site.publishVersion("1" + text);
    scene->installer.makeOnline(site.serve());
    return scene->run();
  });
}

TEST_F(Shell, RunsNothingOfTheBundlesPath) {
  tryAll([](Scene* scene, const std::string& text) {
    scene->installer.write();
    const std::string folder = scene->installer / text;
    fs::create_directories(folder);
    fs::rename(scene->installer / "Setup.app", folder + "/Setup.app");
    test::Command command = scene->installer.command();
    command.arguments[0] = folder + "/Setup.app/Contents/MacOS/Setup";
    command.environment["PATH"] = (scene->installer / "bin") + ":/usr/bin:/bin";
    return test::run(command);
  });
}

TEST_F(Shell, RunsNothingOfTheHomesPath) {
  tryAll([](Scene* scene, const std::string& text) {
    scene->installer.write();
    const std::string home = scene->installer / text;
    fs::create_directories(home);
    std::string account = test::readFile(scene->installer.home.environment()["NSS_WRAPPER_PASSWD"]);
    account.replace(account.find(scene->installer.home.path()), scene->installer.home.path().size(),
                    home);
    test::writeFile(scene->installer / "passwd", account);
    test::Command command = scene->installer.command();
    command.environment["PATH"] = (scene->installer / "bin") + ":/usr/bin:/bin";
    command.environment["NSS_WRAPPER_PASSWD"] = scene->installer / "passwd";
    return test::run(command);
  });
}

TEST_F(Shell, RunsNothingOfTheSystemRuntimesPath) {
  tryAll([](Scene* scene, const std::string& text) {
    scene->installer.makeOnline("http://192.0.2.10/");
    const std::string home = javaHome(*scene, text);
    fs::create_symlink(home + "/bin/java", scene->installer / "bin/java");
    const test::Result result = scene->run();
    EXPECT_EQ(0, result.status) << result.out;
    return result;
  });
}

TEST_F(Shell, RunsNothingOfARelativeFolderOnThePath) {
  tryAll([](Scene* scene, const std::string& text) {
    scene->installer.makeOnline("http://192.0.2.10/");
    javaHome(*scene, text);
    scene->path = text + "/jdk1.8.0_1/bin:";
    return scene->run();
  });
}

TEST_F(Shell, TakesAFolderThatBeginsWithADashForNoOptionOfCp) {
  for (const char* text : {"-rf", "--version", "--help", "-t"}) {
    SCOPED_TRACE(text);
    Scene scene;
    scene.installer.makeOnline("http://192.0.2.10/");
    // A program of its own: the system would hand a script's path to a shell as its first word.
    const std::string java = javaHome(scene, text) + "/bin/java";
    test::writeFile(java, test::readFile(QUORVANE_BIN "/fake_java"), 0755);
    scene.environment["FAKE_JAVA_PROBE_STATUS"] = "72";
    scene.path = std::string(text) + "/jdk1.8.0_1/bin:";
    const test::Result result = scene.run();
    EXPECT_TRUE(mentions(result, "[JRESearch] Running cp -LRf \"" + std::string(text) + "/"))
        << result.out;
    EXPECT_EQ(0, result.status) << result.out;
    EXPECT_TRUE(scene.installer.launched()) << result.out;
  }
}

TEST_F(Shell, RunsNothingOfTheNamesInAnArchive) {
  tryAll([](Scene* scene, const std::string& text) {
    scene->installer.runtime = test::nestedRecord(
        "runtime" + text, Installer::runtimeRecords() +
                              test::fileRecord("Contents/Home/" + text + "/" + text, "x") +
                              test::fileRecord("Contents/Home/" + text + ".jar", "x"));
    return scene->run();
  });
}
