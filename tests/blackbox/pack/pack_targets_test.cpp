#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "tests/blackbox/pack/small_project.h"
#include "tests/support/files.h"
#include "tools/objects/target.h"

// Builds for several targets: the packager has executables of its own for each, in a folder that
// stands in for an installation.

namespace fs = std::filesystem;
using Texts = std::vector<std::string>;

namespace {

class PackTargets : public testing::Test {
 protected:
  PackTargets() {
    fs::create_directories(prefix_ + "/bin");
    fs::copy(QUORVANE_BIN "/quorvane-pack", prefix_ + "/bin");
    test::writeFile(prefix_ + "/lib/quorvane/updater.jar", "stands in for the updater");
    for (const char* target : {"macos-arm64", "macos-x86_64", "linux-arm64", "linux-x86_64"}) {
      for (const char* name : {"launcher", "extractor", "lzma64"}) {
        test::writeFile(companion(target, name), test::standIn(name, target), 0755);
      }
    }
    for (const char* runtime : {"arm", "intel"}) {
      test::writeFile(project_ / runtime + "/bin/java", std::string("java for ") + runtime, 0755);
      test::writeFile(project_ / runtime + "/release", "JAVA_VERSION=\"21.0.4\"\n");
    }
    project_.replace("main_class", "targets = [\"macos-arm64\", \"macos-x86_64\"]\nmain_class");
    project_.replace("[runtime]\nfolder = \"runtime\"\n",
                     "[runtime.macos-arm64]\nfolder = \"arm\"\n\n"
                     "[runtime.macos-x86_64]\nfolder = \"intel\"\n");
  }

  std::string companion(const std::string& target, const std::string& name) const {
    return prefix_ + "/lib/quorvane/" + target + "/" + name;
  }

  test::Transcript build(const Texts& words = {}) const {
    test::writeFile(project_ / "quorvane.toml", project_.text);
    test::Command command = test::packCommand(project_.path(), {"build"});
    command.arguments[0] = prefix_ + "/bin/quorvane-pack";
    command.arguments.insert(command.arguments.end(), words.begin(), words.end());
    command.environment = {{"XDG_CACHE_HOME", project_ / "cache"}};
    return test::transcriptOf(command);
  }

  void expectError(const std::string& message, const Texts& words = {},
                   test::Place place = test::Place::here()) const {
    test::Transcript result = build(words);
    result.err = test::withoutProgress(result.err);
    result.fails(message, place);
  }

  // A value of the Tail record of the offline installer for the target.
  std::string tailValue(const std::string& target, const std::string& name) const {
    return project_
        .pack(
            {"tail", "read", "dist/bundles/" + target + "/offline/Small App.app", "--value", name})
        .out;
  }

  // A JDK of scripts whose jlink keeps what it was asked for.
  void makeJdk() const {
    test::writeFile(project_ / "jdk/bin/jlink",
                    "#!/bin/sh\n"
                    "printf '%s\\n' \"$@\" >> \"${0%/*}/asked\"\n"
                    "while [ \"$1\" != --output ]; do shift; done\n"
                    "mkdir -p \"$2/bin\" && echo java > \"$2/bin/java\"\n"
                    "echo 'JAVA_VERSION=\"21.0.4\"' > \"$2/release\"\n",
                    0755);
  }

  // Packs the folder `name` of the project as the archive name.tar.gz or, with `suffix`, otherwise.
  std::string packed(const std::string& name, const std::string& suffix = ".tar.gz") const {
    test::Command command;
    command.arguments = {"/usr/bin/bsdtar", "-a", "-cf", name + suffix, name};
    command.folder = project_.path();
    test::transcriptOf(command).ends(0);
    return test::digestOf(project_ / name + suffix);
  }

  // The project then makes the runtime for macos-arm64 from a JDK's archive.
  void useArchive(const std::string& keys) {
    project_.replace("[runtime.macos-arm64]\nfolder = \"arm\"\n",
                     "[runtime]\njdk = \"jdk\"\nmodules = [\"java.base\"]\n\n"
                     "[runtime.macos-arm64]\n" +
                         keys);
  }

  test::SmallProject project_;
  const std::string prefix_ = project_ / "prefix";
};

TEST_F(PackTargets, AreAllMadeByOneBuildEachWithItsOwnRuntimeAndExecutables) {
  ASSERT_TRUE(build({"--bundles"}).succeeded());
  EXPECT_EQ((Texts{".quorvane-output", "Small App-3-macos-arm64-online.zip",
                   "Small App-3-macos-arm64.zip", "Small App-3-macos-x86_64-online.zip",
                   "Small App-3-macos-x86_64.zip", "bundles", "index.json", "site"}),
            test::namesIn(project_ / "dist"));
  EXPECT_EQ((Texts{"macos-arm64", "macos-x86_64"}), test::namesIn(project_ / "dist/site"));
  for (const auto& [target, runtime] :
       {std::pair{"macos-arm64", "arm"}, {"macos-x86_64", "intel"}}) {
    EXPECT_EQ(test::standIn("extractor", target),
              test::readFile(project_ / "dist/bundles/" + target +
                             "/offline/Small App.app/Contents/MacOS/Small App"));
    const std::string place = project_.extracted(std::string("dist/site/") + target +
                                                 "/Quorvane-Mac64JRE-210004-archive.p2.l2");
    EXPECT_EQ(std::string("java for ") + runtime,
              test::readFile(place + "/Contents/Home/bin/java"));
    project_
        .pack({"verify", std::string("dist/Small App-3-") + target + ".zip", "--site",
               std::string("dist/site/") + target})
        .ends(0);
  }
}

TEST_F(PackTargets, AreNamedInTheStepsAndInTheResults) {
  const test::Transcript result = build({"--verbose"});
  result
      .reportsAlso(
          "[2/15] macos-arm64: checking the runtime\n"
          "[3/15] macos-arm64: using the runtime arm\n")
      .reportsAlso("[15/15] macos-x86_64: writing the downloads\n");
  EXPECT_EQ(0u, result.out.find("offline installer  dist/Small App-3-macos-arm64.zip\n"
                                "online installer   dist/Small App-3-macos-arm64-online.zip\n"
                                "offline installer  dist/Small App-3-macos-x86_64.zip\n"));
}

TEST_F(PackTargets, LookForUpdatesInTheirOwnFolders) {
  project_.replace("[updater]\nfolder = \"updater\"\nversion = \"5\"\n",
                   "[updates]\nurl = \"https://example.org/beta\"\n");
  project_.replace("[installer]", "[installer]\nupdate_url = \"https://example.org/hello/\"");
  ASSERT_TRUE(build({"--bundles"}).succeeded());
  EXPECT_EQ("https://example.org/hello/macos-arm64/\n", tailValue("macos-arm64", "update-url"));
  EXPECT_EQ("https://example.org/hello/macos-x86_64/\n", tailValue("macos-x86_64", "update-url"));
  const std::string updater =
      project_.extracted("dist/site/macos-arm64/Quorvane-Quorvane-2-archive.p2.l2");
  EXPECT_NE(std::string::npos, test::readFile(updater + "/updates.properties")
                                   .find("url=https://example.org/beta/macos-arm64/\n"));
}

TEST_F(PackTargets, CannotHaveFoldersBelowAnAddressWithAQuery) {
  const std::string before = project_.text;
  project_.replace("[installer]", "[installer]\nupdate_url = \"https://example.org/?app=1\"");
  expectError(
      "quorvane.toml: [installer] update_url is \"https://example.org/?app=1\"; with targets it is "
      "the address of a folder, without '?' and '#'");
  project_.text = before;
  project_.replace("[updater]\nfolder = \"updater\"\nversion = \"5\"\n",
                   "[updates]\nurl = \"https://example.org/#beta\"\n");
  expectError(
      "quorvane.toml: [updates] url is \"https://example.org/#beta\"; with targets it is the "
      "address of a folder, without '?' and '#'");
}

TEST_F(PackTargets, WithADynamicAddressKeepIt) {
  project_.replace("[installer]", "[installer]\nupdate_url = \"D\"");
  ASSERT_TRUE(build({"--bundles"}).succeeded());
  EXPECT_EQ("D\n", tailValue("macos-arm64", "update-url"));
}

TEST_F(PackTargets, OfTheCommandLineTakeTheirPlaceAndKeepTheFoldersOfTheSite) {
  fs::remove_all(project_ / "intel");
  ASSERT_TRUE(build({"--target", "macos-arm64"}).succeeded());
  EXPECT_EQ((Texts{".quorvane-output", "Small App-3-macos-arm64-online.zip",
                   "Small App-3-macos-arm64.zip", "index.json", "site"}),
            test::namesIn(project_ / "dist"));
  EXPECT_EQ(Texts{"macos-arm64"}, test::namesIn(project_ / "dist/site"));
}

TEST_F(PackTargets, MayUseTheExecutablesOfTheCommandLineOneByOne) {
  for (const char* name : {"launcher", "extractor", "lzma64"}) {
    test::writeFile(project_ / "bin/" + name, test::standIn(name, "macos-arm64"), 0755);
  }
  const test::Transcript one =
      build({"--target", "macos-arm64", "--executables", "bin", "--bundles"});
  ASSERT_TRUE(one.succeeded());
  EXPECT_EQ(test::standIn("extractor", "macos-arm64"),
            test::readFile(project_ / "dist/bundles/macos-arm64/offline/Small App.app/Contents/"
                                      "MacOS/Small App"));
  expectError(
      "--executables is for one target, and this project has several; name one with --target",
      {"--executables", "bin"});
  expectError("--runtime is for one target, and this project has several; name one with --target",
              {"--runtime", "arm"});
}

TEST_F(PackTargets, OfThisMachineUseTheRuntimeSectionItself) {
  const std::string own = tools::targetText(tools::thisMachine());
  project_.text = test::SmallProject().text;
  project_.replace("main_class",
                   "targets = [\"" + own + "\", \"linux-arm64\", \"macos-arm64\"]\nmain_class");
  expectError(
      "quorvane.toml: [runtime.linux-arm64] is missing: [runtime] is for this machine; add "
      "that section with 'jmods' or 'jdk_archive' of a JDK for linux-arm64, or with "
      "'folder', a runtime for it");
  project_.replace("[installer]",
                   "[runtime.linux-arm64]\nfolder = \"arm\"\n[runtime.macos-arm64]\nfolder = "
                   "\"arm\"\nversion = 7\n[installer]");
  ASSERT_TRUE(build().succeeded());
  EXPECT_EQ("170015\n",
            test::readFile(project_ / "dist/site/" + own + "/Quorvane-Mac64JRE-version.txt"));
  EXPECT_EQ("7\n",
            test::readFile(project_ / "dist/site/macos-arm64/Quorvane-Mac64JRE-version.txt"));
}

TEST_F(PackTargets, WithoutExecutablesSayHowToGetThem) {
  fs::remove(companion("macos-x86_64", "extractor"));
  expectError(companion("macos-x86_64", "extractor") +
              " is missing: the packager has no executables for macos-x86_64; run "
              "'scripts/build-macos --arch x86_64' and 'cmake --install build' in the packager's "
              "sources, or name their folder with --executables");
  EXPECT_FALSE(test::exists(project_ / "dist/site"));
}

TEST_F(PackTargets, ThatAreUnknownOrTwiceAreRefused) {
  const std::string known = "; known are macos-arm64, macos-x86_64, linux-arm64, linux-x86_64";
  expectError("--target has \"windows\"" + known, {"--target", "windows"});
  project_.replace("\"macos-arm64\", ", "\"macos-x86_64\", ");
  expectError("quorvane.toml: [application] targets has \"macos-x86_64\" twice; remove one");
  project_.replace("[\"macos-x86_64\", ", "[\"macos\", ");
  expectError("quorvane.toml: [application] targets has \"macos\"" + known);
}

TEST_F(PackTargets, MakeTheirRuntimesFromAnArchiveOfAJdk) {
  makeJdk();
  test::writeFile(project_ / "jdk-mac/Contents/Home/jmods/java.base.jmod", "base for the Mac");
  test::writeFile(project_ / "jdk-mac/Contents/Home/bin/java", "not unpacked");
  for (const char* suffix : {".tar.gz", ".zip"}) {
    const std::string digest = packed("jdk-mac", suffix);
    const std::string before = project_.text;
    useArchive("jdk_archive = \"jdk-mac" + std::string(suffix) + "\"\njdk_sha256 = \"" + digest +
               "\"\n");
    test::writeFile(project_ / "jdk/bin/asked", "");
    ASSERT_TRUE(build().succeeded());
    const Texts asked = test::linesOf(test::readFile(project_ / "jdk/bin/asked"));
    const auto found = std::find(asked.begin(), asked.end(), "--module-path");
    ASSERT_NE(asked.end(), found);
    EXPECT_EQ("jmods", fs::path(found[1]).filename().string());
    EXPECT_EQ(1, std::count(asked.begin(), asked.end(), "--output"));
    project_.text = before;
  }
}

TEST_F(PackTargets, RefuseAnArchiveThatIsNotTheOneThatWasMeant) {
  makeJdk();
  test::writeFile(project_ / "jdk-mac/jmods/java.base.jmod", "base for the Mac");
  const std::string digest = packed("jdk-mac");
  const std::string other(64, '0');
  useArchive("jdk_archive = \"jdk-mac.tar.gz\"\njdk_sha256 = \"" + other + "\"\n");
  expectError("jdk-mac.tar.gz has the SHA-256 " + digest + ", and jdk_sha256 is " + other +
              "; get the file again, or correct jdk_sha256");
  EXPECT_FALSE(test::exists(project_ / "jdk/bin/asked"));
}

TEST_F(PackTargets, RefuseAnArchiveThatHasNoModules) {
  makeJdk();
  const std::string digest = packed("app");
  useArchive("jdk_archive = \"app.tar.gz\"\njdk_sha256 = \"" + digest + "\"\n");
  expectError(
      "app.tar.gz has no folder jmods with java.base.jmod; name the archive of a JDK that has its "
      "modules as jmod files");
}

struct WrongSource {
  const char* keys;
  const char* message;
};

TEST_F(PackTargets, WithAWrongSourceAreRefused) {
  makeJdk();
  const std::string before = project_.text;
  const WrongSource sources[] = {
      {"", "needs 'jmods' or 'jdk_archive', to make a runtime, or 'folder'"},
      {"folder = \"arm\"\njmods = \"arm\"\n",
       "has both 'folder', an existing runtime, and 'jmods' or 'jdk_archive', which make a new "
       "one; remove one of them"},
      {"jmods = \"arm\"\njdk_archive = \"release.key\"\njdk_sha256 = \"0\"\n",
       "has both 'jmods' and 'jdk_archive'; remove one of them"},
      {"folder = \"none\"\n", "folder names none, which is not an existing folder"},
      {"jdk_archive = \"none.zip\"\n", "jdk_archive names none.zip, which is not an existing file"},
      {"jdk_archive = \"release.key\"\n",
       "needs the key 'jdk_sha256' beside 'jdk_archive': the SHA-256 of that file, which its maker "
       "publishes"},
      {"jmods = \"arm\"\njdk_sha256 = \"0\"\n",
       "has 'jdk_sha256' without 'jdk_archive'; remove it"},
      {"jdk_archive = \"release.key\"\njdk_sha256 = \"ABC\"\n",
       "jdk_sha256 is \"ABC\"; it is 64 hexadecimal digits, in lower case"},
      {"folder = \"arm\"\nversion = \"1.2\"\n",
       "version is \"1.2\"; versions are compared as whole numbers, so use up to 18 digits"}};
  for (const WrongSource& source : sources) {
    useArchive(source.keys);
    expectError(std::string("quorvane.toml: [runtime.macos-arm64] ") + source.message);
    project_.text = before;
  }
  useArchive("folder = \"arm\"\njdk = \"jdk\"\n");
  expectError(
      "quorvane.toml:20: [runtime.macos-arm64] has no key 'jdk'; known are folder, jdk_archive, "
      "jdk_sha256, jmods, version");
  project_.text = before;
  project_.replace("[runtime.macos-arm64]", "[runtime.macos]");
  build().reportsAlso("[runtime] has no key 'macos'");
}

}  // namespace
