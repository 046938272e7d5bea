#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <string>
#include <vector>

#include "tests/blackbox/pack/small_project.h"
#include "tests/support/files.h"
#include "tests/support/jar_bytes.h"
#include "tests/support/process.h"
#include "tests/support/test_keys.h"

// What builds keep for the next ones.

namespace fs = std::filesystem;
using Texts = std::vector<std::string>;

namespace {

const char kArchive[] = "dist/site/Quorvane-Mac64JRE-210004-archive.p2.l2";

class PackCache : public testing::Test {
 protected:
  PackCache() {
    // A JDK whose jlink counts its calls and links the modules' bytes.
    test::writeFile(project_ / "jdk/bin/jlink",
                    "#!/bin/sh\n"
                    "echo called >> \"${0%/*}/calls\"\n"
                    "here=${0%/*}/..\n"
                    "jmods=$here/jmods\n"
                    "out=\n"
                    "for word in \"$@\"; do\n"
                    "  case $before in --output) out=$word ;; --module-path) jmods=$word ;; esac\n"
                    "  before=$word\n"
                    "done\n"
                    "mkdir -p \"$out/bin\" && cat \"$jmods\"/*.jmod > \"$out/bin/java\"\n"
                    "chmod 755 \"$out/bin/java\"\n"
                    "cp \"$here/release\" \"$out/release\"\n",
                    0755);
    test::writeFile(project_ / "jdk/release", "JAVA_VERSION=\"21.0.4\"\n");
    test::writeFile(project_ / "jdk/jmods/java.base.jmod", "the base");
    project_.replace("folder = \"runtime\"", "jdk = \"jdk\"\nmodules = [\"java.base\"]");
  }

  void build(const Texts& words = {}) {
    const test::Transcript result = project_.buildDownloads(words);
    ASSERT_TRUE(result.succeeded());
    result.reports("");
  }

  size_t calls() const {
    const std::string path = project_ / "jdk/bin/calls";
    return test::exists(path) ? test::linesOf(test::readFile(path)).size() : 0;
  }

  std::string cache() const { return project_ / "cache/quorvane"; }

  // The entries of a kind.
  Texts entries(const std::string& kind) const {
    Texts found;
    for (const std::string& name : test::namesIn(cache())) {
      if (name.rfind(kind + "-", 0) == 0) {
        found.push_back(cache() + "/" + name);
      }
    }
    return found;
  }

  // The inode tells whether an entry was made again.
  static ino_t identityOf(const std::string& path) {
    struct stat status {};
    EXPECT_EQ(0, stat(path.c_str(), &status));
    return status.st_ino;
  }

  test::SmallProject project_;
};

TEST_F(PackCache, GivesTheNextBuildTheRuntimeAndItsArchiveWithTheSameBytes) {
  build();
  const std::string first = test::manifestOf(project_ / "dist");
  EXPECT_EQ(1u, entries("runtime").size());
  ASSERT_EQ(1u, entries("archive").size());
  const ino_t archive = identityOf(entries("archive")[0] + "/content");
  build();
  EXPECT_EQ(1u, calls());
  EXPECT_EQ(archive, identityOf(entries("archive")[0] + "/content"));
  EXPECT_EQ(first, test::manifestOf(project_ / "dist"));
  build({"--no-cache"});
  EXPECT_EQ(2u, calls());
  EXPECT_EQ(first, test::manifestOf(project_ / "dist"));
}

TEST_F(PackCache, GivesABuildWithAnotherApplicationAllThatIsNotOfTheApplication) {
  build();
  const Texts before = entries("component");
  ASSERT_EQ(4u, before.size()) << "application and updater, for the site and for installers";
  std::vector<ino_t> identities;
  for (const std::string& entry : before) {
    identities.push_back(identityOf(entry + "/content"));
  }
  test::writeFile(project_ / "app/lib/other.jar", test::jarOf({{"a library", "changed"}}));
  build();
  const std::string changed = test::manifestOf(project_ / "dist");
  EXPECT_EQ(6u, entries("component").size());
  EXPECT_EQ(1u, entries("archive").size());
  EXPECT_EQ(1u, calls());
  for (size_t i = 0; i < before.size(); ++i) {
    EXPECT_EQ(identities[i], identityOf(before[i] + "/content"));
  }
  build({"--no-cache"});
  EXPECT_EQ(changed, test::manifestOf(project_ / "dist"));
}

TEST_F(PackCache, NoticesADamagedApplicationAndPacksItAgain) {
  build();
  const std::string first = test::manifestOf(project_ / "dist");
  for (const std::string& entry : entries("component")) {
    test::writeFile(entry + "/content", "damaged");
  }
  build();
  EXPECT_EQ(4u, entries("component").size());
  EXPECT_EQ(first, test::manifestOf(project_ / "dist"));
}

TEST_F(PackCache, IsNotTouchedWhenItIsNotWanted) {
  build({"--no-cache"});
  EXPECT_FALSE(test::exists(cache()));
}

TEST_F(PackCache, KnowsWhatARuntimeIsMadeOf) {
  build();
  test::writeFile(project_ / "jdk/jmods/java.base.jmod", "another base");
  build();
  EXPECT_EQ(2u, calls());
  EXPECT_EQ(2u, entries("archive").size());
  test::writeFile(project_ / "jdk/release", "JAVA_VERSION=\"21.0.4\"\nMORE=1\n");
  build();
  EXPECT_EQ(3u, calls());
  project_.replace("[\"java.base\"]", "[\"java.base\", \"java.desktop\"]");
  build();
  EXPECT_EQ(4u, calls());
  fs::create_directory(project_ / "other");
  fs::copy(project_ / "jdk/jmods/java.base.jmod", project_ / "other/java.base.jmod");
  project_.replace("jdk = \"jdk\"", "jdk = \"jdk\"\njmods = \"other\"");
  build();
  EXPECT_EQ(4u, calls()) << "the same bytes in another folder";
}

TEST_F(PackCache, KnowsTheKeyAndTheVersionOfAnArchive) {
  build();
  const std::string first = test::readFile(project_ / kArchive);
  test::writeFile(project_ / "other.key", test::readFile(test::keyFile("second")), 0600);
  build({"--key", "other.key"});
  EXPECT_EQ(2u, entries("archive").size());
  EXPECT_TRUE(first != test::readFile(project_ / kArchive));
  project_.pack({"verify", "dist/" + test::downloadOf(), "--site", "dist/site"}).ends(0);
  project_.replace("modules = ", "version = 9\nmodules = ");
  build();
  EXPECT_EQ(3u, entries("archive").size());
  EXPECT_EQ(1u, calls());
}

TEST_F(PackCache, NoticesDamageAndMakesItAgain) {
  build();
  const std::string first = test::manifestOf(project_ / "dist");
  test::writeFile(entries("archive")[0] + "/content", "damaged");
  test::writeFile(entries("runtime")[0] + "/content/bin/java", "damaged", 0755);
  build();
  EXPECT_EQ(2u, calls());
  EXPECT_EQ(first, test::manifestOf(project_ / "dist"));
  fs::remove(entries("archive")[0] + "/sum");
  fs::remove_all(entries("runtime")[0] + "/content");
  build();
  EXPECT_EQ(3u, calls());
  EXPECT_EQ(first, test::manifestOf(project_ / "dist"));
  build();
  EXPECT_EQ(3u, calls());
}

TEST_F(PackCache, HoldsTheArchiveOfAnExistingRuntimeByItsContent) {
  project_.replace("jdk = \"jdk\"\nmodules = [\"java.base\"]", "folder = \"runtime\"");
  fs::create_directory(project_ / "elsewhere");
  test::writeFile(project_ / "elsewhere/policy", "one");
  fs::create_symlink(project_ / "elsewhere/policy", project_ / "runtime/policy");
  build();
  build();
  EXPECT_EQ(1u, entries("archive").size());
  test::writeFile(project_ / "elsewhere/policy", "two");
  build();
  EXPECT_EQ(2u, entries("archive").size());
}

TEST_F(PackCache, LosesItsOldestEntriesAndWhatKilledBuildsLeft) {
  build();
  const auto old = fs::file_time_type::clock::now() - std::chrono::hours(48);
  for (int i = 10; i < 30; ++i) {
    const std::string entry = cache() + "/archive-" + std::to_string(i);
    fs::create_directory(entry);
    fs::last_write_time(entry, old + std::chrono::minutes(i));
  }
  fs::create_directory(cache() + "/quorvane-killed");
  fs::last_write_time(cache() + "/quorvane-killed", old);
  fs::create_directory(cache() + "/quorvane-running");
  test::writeFile(project_ / "jdk/release", "JAVA_VERSION=\"21.0.5\"\n");
  build();
  const Texts left = entries("archive");
  EXPECT_EQ(12u, left.size());
  EXPECT_EQ(1, std::count(left.begin(), left.end(), cache() + "/archive-29"));
  EXPECT_EQ(0, std::count(left.begin(), left.end(), cache() + "/archive-19"));
  EXPECT_FALSE(test::exists(cache() + "/quorvane-killed"));
  EXPECT_TRUE(test::exists(cache() + "/quorvane-running"));
}

TEST_F(PackCache, ThatOthersMayWriteToIsNotUsed) {
  fs::create_directories(cache());
  fs::permissions(cache(), fs::perms{0777});
  project_.buildDownloads().ends(0).reports("quorvane-pack: the cache " + cache() +
                                            " is not used: others may write to it\n");
  EXPECT_EQ(Texts{}, test::namesIn(cache()));
}

TEST_F(PackCache, ThatIsAFileIsNotUsed) {
  test::writeFile(cache(), "a file");
  project_.buildDownloads().ends(0).reports("quorvane-pack: the cache " + cache() +
                                            " is not used: it is not a folder\n");
}

TEST_F(PackCache, IsBelowTheHomeFolderUnlessTheEnvironmentNamesAnotherPlace) {
  project_.buildDownloads({}, {{"XDG_CACHE_HOME", "relative"}, {"HOME", project_ / "home"}})
      .ends(0);
  const bool isMac = test::exists(project_ / "home/Library");
  EXPECT_EQ(6u, test::namesIn(project_ /
                              (isMac ? "home/Library/Caches/Quorvane" : "home/.cache/quorvane"))
                    .size());
}

TEST_F(PackCache, IsSharedByBuildsAtTheSameTime) {
  build();
  const std::string wanted = test::manifestOf(project_ / "dist");
  fs::remove_all(cache());
  std::vector<pid_t> builds;
  for (int i = 0; i < 4; ++i) {
    const test::Command command = test::packCommand(
        project_.path(), {"build", "--executables", "bin", "--output", "dist" + std::to_string(i)});
    builds.push_back(test::start(command, project_ / "out" + std::to_string(i),
                                 project_ / "err" + std::to_string(i)));
  }
  for (size_t i = 0; i < builds.size(); ++i) {
    constexpr double kSeconds = 60;
    EXPECT_EQ(0, test::waitForChild(builds[i], kSeconds).status)
        << test::readFile(project_ / "err" + std::to_string(i));
    EXPECT_EQ(wanted, test::manifestOf(project_ / "dist" + std::to_string(i)));
  }
  EXPECT_EQ(6u, test::namesIn(cache()).size());
}

TEST_F(PackCache, KeepsTheNamesOfTheModulesThatTheJarsNeed) {
  test::writeFile(project_ / "jdk/bin/jdeps",
                  "#!/bin/sh\necho called >> \"${0%/*}/asked\"\necho java.base,java.sql\n", 0755);
  project_.replace("modules = [\"java.base\"]\n", "");
  build();
  build();
  EXPECT_EQ("called\n", test::readFile(project_ / "jdk/bin/asked"));
  EXPECT_EQ(1u, calls());
  test::writeFile(project_ / "app/lib/other.jar", test::jarOf({{"another", "library"}}));
  build();
  EXPECT_EQ("called\ncalled\n", test::readFile(project_ / "jdk/bin/asked"));
  EXPECT_EQ(1u, calls()) << "the same modules";
}

// The modules of a JDK's archive are unpacked once.
TEST_F(PackCache, KeepsTheModulesOfAnArchive) {
  test::writeFile(project_ / "mac/jmods/java.base.jmod", "base for the Mac");
  test::Command command;
  command.arguments = {"/usr/bin/bsdtar", "-a", "-cf", "mac.tar.gz", "mac"};
  command.folder = project_.path();
  ASSERT_TRUE(test::transcriptOf(command).succeeded());
  project_.replace("jdk = \"jdk\"", "jdk = \"jdk\"\njdk_archive = \"mac.tar.gz\"\njdk_sha256 = \"" +
                                        test::digestOf(project_ / "mac.tar.gz") + "\"");
  build();
  ASSERT_EQ(1u, entries("modules").size());
  const ino_t modules = identityOf(entries("modules")[0]);
  build();
  EXPECT_EQ(modules, identityOf(entries("modules")[0]));
  EXPECT_EQ(1u, calls());
}

}  // namespace
