#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "tests/blackbox/pack/small_project.h"
#include "tests/support/files.h"
#include "tests/support/process.h"

// How many compressions run side by side changes nothing but the time.

namespace fs = std::filesystem;
using Texts = std::vector<std::string>;

namespace {

// What a build without a cache leaves and says.
struct Outcome {
  std::string manifest;
  std::string err;
};

Outcome buildWith(const test::SmallProject& project, const std::string& jobs, int status) {
  const test::Result result =
      project.build({"--verbose", "--no-cache", "--jobs", jobs, "--output", "dist" + jobs});
  EXPECT_EQ(status, result.status) << result.err;
  return {test::manifestOf(project / "dist" + jobs), result.err};
}

TEST(PackJobs, GiveTheSameBytesAndStepsWhateverTheirNumber) {
  const test::SmallProject project;
  const Outcome one = buildWith(project, "1", 0);
  EXPECT_NE(std::string::npos, one.manifest.find("site/Quorvane-Small App-3-archive.p2.l2"));
  for (const char* jobs : {"0", "2", "7"}) {
    const Outcome some = buildWith(project, jobs, 0);
    EXPECT_EQ(one.manifest, some.manifest) << jobs;
    EXPECT_EQ(one.err, some.err) << jobs;
  }
}

// The updater is small and fails long before the application.
TEST(PackJobs, ThatFailTogetherSayWhatIsFirstInTheOrderOfTheSteps) {
  const test::SmallProject project;
  test::writeFile(project / "app/Data", std::string(3u << 20, 'x'));
  test::writeFile(project / "app/data", "");
  test::writeFile(project / "updater/Data", "");
  test::writeFile(project / "updater/data", "");
  const Outcome one = buildWith(project, "1", 1);
  EXPECT_NE(std::string::npos, one.err.find("the paths Data and data differ only in case"))
      << one.err;
  for (int i = 0; i < 5; ++i) {
    EXPECT_EQ(one.err, buildWith(project, "4", 1).err);
  }
}

TEST(PackJobs, AreNotStartedInUnusualNumbers) {
  const test::SmallProject project;
  for (const char* jobs : {"-1", "257", "many"}) {
    const test::Result result = project.build({"--jobs", jobs});
    EXPECT_EQ(2, result.status);
    EXPECT_NE(std::string::npos, result.err.find("--jobs")) << result.err;
    EXPECT_FALSE(test::exists(project / "dist"));
  }
}

// Targets mostly have the same application and the same updater.
TEST(PackJobs, PackWhatTargetsHaveInCommonOnce) {
  test::SmallProject project;
  for (const char* target : {"macos-x86_64", "linux-x86_64"}) {
    for (const char* name : {"launcher", "extractor", "lzma64"}) {
      test::writeFile(project / "lib/quorvane/" + target + "/" + name, test::standIn(name, target),
                      0755);
    }
  }
  test::writeFile(project / "lib/quorvane/updater.jar", "");
  fs::create_directory(project / "installed");
  fs::copy(QUORVANE_BIN "/quorvane-pack", project / "installed/quorvane-pack");
  project.replace("[runtime]\nfolder = \"runtime\"\n",
                  "[runtime.macos-x86_64]\nfolder = \"runtime\"\n\n"
                  "[runtime.linux-x86_64]\nfolder = \"runtime\"\n");
  project.replace("icon = ", "targets = [\"macos-x86_64\", \"linux-x86_64\"]\nicon = ");
  test::writeFile(project / "quorvane.toml", project.text);
  test::Command command;
  command.arguments = {project / "installed/quorvane-pack", "build"};
  command.folder = project.path();
  const test::Result result = test::run(command);
  ASSERT_EQ(0, result.status) << result.err;
  size_t components = 0;
  for (const std::string& name : test::namesIn(project / "cache/quorvane")) {
    components += name.rfind("component-", 0) == 0 ? 1 : 0;
  }
  // For the update sites and for the installers; only lzma64 differs.
  EXPECT_EQ(2u + 2u + 1u, components);
  EXPECT_EQ(test::digestOf(project / "dist/site/macos-x86_64/Quorvane-Small App-3-archive.p2.l2"),
            test::digestOf(project / "dist/site/linux-x86_64/Quorvane-Small App-3-archive.p2.l2"));
}

}  // namespace
