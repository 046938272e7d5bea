#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "tests/blackbox/pack/small_project.h"
#include "tests/support/files.h"

// The downloads that 'quorvane-pack build' makes, and their index.

namespace fs = std::filesystem;
using Texts = std::vector<std::string>;

namespace {

// What a program prints in the folder of the project.
std::string outputOf(const test::SmallProject& project, const Texts& words) {
  test::Command command;
  command.arguments = words;
  command.folder = project.path();
  const test::Transcript result = test::transcriptOf(command);
  result.ends(0);
  return result.out;
}

// A field of every file in the index, a line each.
std::string indexField(const test::SmallProject& project, const std::string& name) {
  return outputOf(project, {"/usr/bin/python3", "-c",
                            "import json, sys\n"
                            "for file in json.load(open('dist/index.json'))['files']:\n"
                            "    print(file[sys.argv[1]])\n",
                            name});
}

TEST(PackDownloads, AreAllThatABuildLeavesBesideTheSiteAndTheIndex) {
  const test::SmallProject project;
  ASSERT_TRUE(project.buildDownloads().succeeded());
  EXPECT_EQ((Texts{".quorvane-output", test::downloadOf("-online"), test::downloadOf(),
                   "index.json", "site"}),
            test::namesIn(project / "dist"));
}

TEST(PackDownloads, HoldOneBundleNamedAfterTheApplicationEach) {
  const test::SmallProject project;
  ASSERT_TRUE(project.build({"--target", "macos-arm64"}).succeeded());
  const char* const kinds[][2] = {
      {"offline", ""}, {"online", "-online"}, {"launcher", "-launcher"}};
  for (const auto& [kind, suffix] : kinds) {
    const std::string place = project / kind;
    outputOf(project, {"/usr/bin/unzip", "-q",
                       std::string("dist/Small App-3-macos-arm64") + suffix + ".zip", "-d", place});
    EXPECT_EQ(Texts{"Small App.app"}, test::namesIn(place));
    const std::string bundle =
        project / std::string("dist/bundles/macos-arm64/") + kind + "/Small App.app";
    EXPECT_EQ(test::manifestOf(bundle), test::manifestOf(place + "/Small App.app")) << kind;
  }
}

TEST(PackDownloads, ForLinuxAreUnpackedByTar) {
  const test::SmallProject project;
  ASSERT_TRUE(project.build({"--target", "linux-arm64"}).succeeded());
  outputOf(project, {"/bin/tar", "-xpf", "dist/Small App-3-linux-arm64.tar.gz"});
  EXPECT_EQ(test::manifestOf(project / "dist/bundles/linux-arm64/offline/Small App.app"),
            test::manifestOf(project / "Small App.app"));
}

TEST(PackDownloads, OfTwoBuildsHaveTheSameBytes) {
  const test::SmallProject first;
  const test::SmallProject second;
  for (const char* target : {"macos-x86_64", "linux-x86_64"}) {
    ASSERT_TRUE(first.buildDownloads({"--target", target}).succeeded());
    ASSERT_TRUE(second.buildDownloads({"--target", target}, {{"TZ", "Asia/Tokyo"}}).succeeded());
    EXPECT_EQ(test::manifestOf(first / "dist"), test::manifestOf(second / "dist"));
  }
}

TEST(PackDownloads, AreListedInTheIndexWithSizesAndDigests) {
  const test::SmallProject project;
  ASSERT_TRUE(project.build({"--target", "macos-arm64"}).succeeded());
  EXPECT_EQ(
      "Small App-3-macos-arm64.zip\nSmall App-3-macos-arm64-online.zip\n"
      "Small App-3-macos-arm64-launcher.zip\n",
      indexField(project, "name"));
  EXPECT_EQ("offline\nonline\nlauncher\n", indexField(project, "kind"));
  EXPECT_EQ("macos-arm64\nmacos-arm64\nmacos-arm64\n", indexField(project, "target"));
  EXPECT_EQ("3\n3\n3\n", indexField(project, "version"));
  std::string sizes;
  std::string digests;
  for (const std::string& name : test::linesOf(indexField(project, "name"))) {
    sizes += std::to_string(fs::file_size(project / "dist/" + name)) + "\n";
    digests += test::digestOf(project / "dist/" + name) + "\n";
  }
  EXPECT_EQ(sizes, indexField(project, "size"));
  EXPECT_EQ(digests, indexField(project, "sha256"));
}

TEST(PackDownloads, AreNamedByTheVersionForUsersWithUnderscoresForWhatNoFileNameCanHold) {
  test::SmallProject project;
  project.replace("version = \"3\"", "version = \"3\"\ndisplay_version = \"1/../2\\\\3:4\"");
  const test::Result result = project.buildDownloads({"--target", "macos-arm64"});
  ASSERT_EQ(0, result.status) << result.err;
  EXPECT_EQ((Texts{".quorvane-output", "Small App-1_.._2_3_4-macos-arm64-online.zip",
                   "Small App-1_.._2_3_4-macos-arm64.zip", "index.json", "site"}),
            test::namesIn(project / "dist"));
}

TEST(PackDownloads, HaveTheVersionForUsersInTheIndexAsItIsWritten) {
  test::SmallProject project;
  project.replace("version = \"3\"", "version = \"3\"\ndisplay_version = \"1.4/2\"");
  ASSERT_EQ(0, project.buildDownloads({"--target", "macos-arm64"}).status);
  EXPECT_EQ("3\n3\n", indexField(project, "version"));
  EXPECT_EQ("1.4/2\n1.4/2\n", indexField(project, "display_version"));
}

TEST(PackDownloads, AreVerifiedAsTheirBundlesAre) {
  const test::SmallProject project;
  ASSERT_TRUE(project.buildDownloads().succeeded());
  for (const char* kind : {"", "-online"}) {
    const std::string path = "dist/" + test::downloadOf(kind);
    project.pack({"verify", path, "--site", "dist/site"})
        .ends(0)
        .mentions("\n" + path + ": all is well\n");
  }
}

TEST(PackDownloads, WithADamagedBundleAreFoundAndNamedByTheirOwnPath) {
  const test::SmallProject project;
  ASSERT_TRUE(project.build().succeeded());
  const std::string bundle = project / test::bundleIn("dist", "offline");
  fs::permissions(bundle + "/Contents/MacOS/Small App", fs::perms{0644});
  outputOf(project, {"/usr/bin/bsdtar", "-a", "-cf", "damaged.zip", "-C",
                     fs::path(bundle).parent_path(), "Small App.app"});
  project.pack({"verify", "damaged.zip"})
      .fails(
          "damaged.zip would not work:\n"
          "  damaged.zip:Small App.app/Contents/MacOS/Small App is not executable; run "
          "'chmod 755' on it");
}

TEST(PackDownloads, ThatHoldNoBundleAreRefused) {
  const test::SmallProject project;
  outputOf(project, {"/usr/bin/bsdtar", "-a", "-cf", "other.zip", "app"});
  project.pack({"verify", "other.zip"})
      .fails("other.zip is not a download of a bundle: it does not hold one NAME.app");
}

}  // namespace
