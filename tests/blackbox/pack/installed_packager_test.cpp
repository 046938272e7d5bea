#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "tests/blackbox/pack/small_project.h"
#include "tests/support/files.h"
#include "tests/support/jar_bytes.h"
#include "tests/support/test_keys.h"
#include "tools/objects/target.h"

// The packager where 'cmake --install build --prefix P' puts it, called by its name.

namespace fs = std::filesystem;

namespace {

const std::string kTarget = tools::targetText(tools::thisMachine());

class InstalledPackager : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(
        test::transcriptOf({{QUORVANE_CMAKE, "--install", QUORVANE_BUILD, "--prefix", prefix_}})
            .succeeded());
    test::writeFile(folder_ / "hello.jar",
                    test::jarOfClass("org.example.Hello", "Main-Class: org.example.Hello\r\n"));
    test::writeFile(folder_ / "release.key", test::readFile(test::keyFile("first")), 0600);
    test::writeFile(folder_ / "runtime/bin/java", "a java", 0755);
    test::writeFile(folder_ / "runtime/release", "JAVA_VERSION=\"17.0.15\"\n");
  }

  test::Transcript run(const std::vector<std::string>& words) {
    test::Command command;
    command.arguments = {"/bin/sh", "-c", "exec quorvane-pack \"$@\"", "sh"};
    command.arguments.insert(command.arguments.end(), words.begin(), words.end());
    command.environment = {{"PATH", prefix_ + "/bin:" + getenv("PATH")},
                           {"XDG_CACHE_HOME", folder_ / "cache"}};
    command.folder = folder_.path();
    return test::transcriptOf(command);
  }

  std::string companion(const std::string& name) { return prefix_ + "/lib/quorvane/" + name; }

  // Takes a companion away, so that a build must fail with the message.
  void expectNeeded(const std::string& name, const std::string& message) {
    fs::rename(companion(name), folder_ / "away");
    run({"build", "--quiet", "--runtime", "runtime"}).fails(message);
    fs::rename(folder_ / "away", companion(name));
  }

  const test::TempFolder folder_;
  const std::string prefix_ = folder_ / "prefix";
};

TEST_F(InstalledPackager, MakesInstallersWithTheCompanionsBesideIt) {
  ASSERT_TRUE(run({"init", "hello.jar"}).succeeded());
  ASSERT_TRUE(run({"build", "--runtime", "runtime", "--bundles", "--launcher-bundle"}).succeeded());
  EXPECT_TRUE(test::readFile(companion(kTarget + "/launcher")) ==
              test::readFile(folder_ / test::bundleIn("dist", "launcher", "Hello") +
                             "/Contents/MacOS/Hello"));
  EXPECT_TRUE(test::readFile(companion(kTarget + "/extractor")) ==
              test::readFile(folder_ / test::bundleIn("dist", "offline", "Hello") +
                             "/Contents/MacOS/Hello"));
  run({"verify", test::bundleIn("dist", "offline", "Hello")}).ends(0);
}

TEST_F(InstalledPackager, UsesNoOtherCompanions) {
  ASSERT_TRUE(run({"init", "hello.jar"}).succeeded());
  const tools::Target target = tools::thisMachine();
  const std::string advice =
      target.system == tools::System::linux_
          ? "build and install the packager on such a machine"
          : "run 'scripts/build-macos --arch " +
                std::string(target.processor == tools::Processor::arm64 ? "arm64" : "x86_64") +
                "' and 'cmake --install build' in the packager's sources";
  for (const char* name : {"launcher", "extractor", "lzma64"}) {
    const std::string file = kTarget + "/" + name;
    expectNeeded(file, companion(file) + " is missing: the packager has no executables for " +
                           kTarget + "; " + advice + ", or name their folder with --executables");
  }
  expectNeeded("updater.jar", "the packager's own updater is not at " + companion("updater.jar") +
                                  ": it was built without a JDK; build it with one, or name an "
                                  "updater as 'folder' and 'version' in [updater]");
}

TEST_F(InstalledPackager, HasTheExecutablesForMacosThatWereBuilt) {
  int built = 0;
  for (const auto& [target, folder] :
       {std::pair{"macos-x86_64", "build-macos"}, {"macos-arm64", "build-macos-arm64"}}) {
    for (const char* name : {"launcher", "extractor", "lzma64"}) {
      const std::string source = std::string(QUORVANE_SOURCE "/") + folder + "/bin/" + name;
      if (target == kTarget || !test::exists(source)) {
        continue;
      }
      ++built;
      const std::string installed = companion(std::string(target) + "/" + name);
      EXPECT_TRUE(test::readFile(source) == test::readFile(installed)) << installed;
      EXPECT_EQ(0755u, test::modeOf(installed));
    }
  }
  if (built == 0) {
    GTEST_SKIP() << "scripts/build-macos has not been run here";
  }
}

TEST_F(InstalledPackager, HasItsManualPagesWhereManLooksForThem) {
  for (const char* page : {"man1/quorvane-pack.1", "man1/lzma64.1", "man7/quorvane-launcher.7"}) {
    EXPECT_EQ(0u, test::readFile(prefix_ + "/share/man/" + page).find(".TH ")) << page;
  }
}

}  // namespace
