// The update site that 'build' writes, and what 'verify --site' says of it.

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <string>
#include <vector>

#include "tests/blackbox/pack/small_project.h"
#include "tests/support/files.h"
#include "tests/support/master_folder.h"
#include "tests/support/test_home.h"
#include "tests/support/test_keys.h"

namespace fs = std::filesystem;

namespace {

const std::string kSiteInstaller = test::bundleIn("dist", "offline");
const char kAppArchive[] = "dist/site/Quorvane-Small App-3-archive.p2.l2";
const char kAppVersion[] = "dist/site/Quorvane-Small App-version.txt";
const char kUpdaterArchive[] = "dist/site/Quorvane-Quorvane-5-archive.p2.l2";
const char kRuntimeArchive[] = "dist/site/Quorvane-Mac64JRE-170015-archive.p2.l2";

class PackSite : public testing::Test {
 protected:
  void build(const std::vector<std::string>& words = {}) {
    ASSERT_TRUE(project_.build(words).succeeded());
  }

  test::Transcript verify() {
    return project_.pack({"verify", kSiteInstaller, "--site", "dist/site"});
  }

  // The complaint about the site, which must be this one alone.
  void expectProblem(const std::string& problem, test::Place place = test::Place::here()) {
    verify().fails(kSiteInstaller + " would not work:\n  " + problem, place);
  }

  // Writes an archive over the application's, of its own files and with the words in addition.
  void replaceApplication(std::vector<std::string> words) {
    const std::string folder = project_.extracted(kAppArchive);
    fs::remove(folder + "/qvArcSpBlock_Component");
    words.insert(words.begin(), {"archive", "create"});
    words.insert(words.end(), {folder, kAppArchive});
    ASSERT_TRUE(project_.pack(words).succeeded());
  }

  test::SmallProject project_;
};

TEST_F(PackSite, HoldsAVersionTextAndAnArchiveForEachComponent) {
  build();
  EXPECT_EQ((std::vector<std::string>{
                "Quorvane-Mac64JRE-170015-archive.p2.l2", "Quorvane-Mac64JRE-version.txt",
                "Quorvane-Quorvane-5-archive.p2.l2", "Quorvane-Quorvane-version.txt",
                "Quorvane-Small App-3-archive.p2.l2", "Quorvane-Small App-version.txt"}),
            test::namesIn(project_ / "dist/site"));
  EXPECT_EQ("3\n", test::readFile(project_ / kAppVersion));
  EXPECT_EQ("5\n", test::readFile(project_ / "dist/site/Quorvane-Quorvane-version.txt"));
  EXPECT_EQ("170015\n", test::readFile(project_ / "dist/site/Quorvane-Mac64JRE-version.txt"));
}

TEST_F(PackSite, HoldsWhatAnInstallerPutsIntoTheVersionFolders) {
  build();
  const std::string application = project_.extracted(kAppArchive);
  EXPECT_EQ(test::readFile(project_ / "app/main.jar"), test::readFile(application + "/main.jar"));
  EXPECT_EQ(test::readFile(project_ / "app/lib/other.jar"),
            test::readFile(application + "/lib/other.jar"));
  EXPECT_TRUE(test::exists(application + "/QuorvaneLaunch"));
  EXPECT_EQ("3", test::readFile(application + "/version.txt"));
  const std::string updater = project_.extracted(kUpdaterArchive);
  EXPECT_EQ((std::vector<std::string>{"QuorvaneLaunch", "lzma64", "nativesplash.png",
                                      "qvArcSpBlock_Component", "updater.jar", "version.txt"}),
            test::namesIn(updater));
  EXPECT_EQ(test::standIn("lzma64"), test::readFile(updater + "/lzma64"));
  EXPECT_EQ("5", test::readFile(updater + "/version.txt"));
}

TEST_F(PackSite, SaysInsideEachArchiveWhichComponentAndVersionItIs) {
  build();
  const auto recordOf = [this](const char* archive) {
    return test::readFile(project_.extracted(archive) + "/qvArcSpBlock_Component");
  };
  EXPECT_EQ("Small App 3", recordOf(kAppArchive));
  EXPECT_EQ("Quorvane 5 for Small App", recordOf(kUpdaterArchive));
  EXPECT_EQ("Mac64JRE 170015", recordOf(kRuntimeArchive));
}

TEST_F(PackSite, IsWrittenArchiveBeforeVersionText) {
  build();
  const auto timeOf = [this](const std::string& name) {
    return fs::last_write_time(project_ / name);
  };
  EXPECT_LE(timeOf(kAppArchive), timeOf(kAppVersion));
  EXPECT_LE(timeOf(kUpdaterArchive), timeOf("dist/site/Quorvane-Quorvane-version.txt"));
}

TEST_F(PackSite, WithoutAKeyIsMadeAndSaysThatNobodyTakesIt) {
  project_.replace("key = \"release.key\"\n", "");
  project_.replace("[installer]", "[installer]\nrequire_signature = false");
  project_.build()
      .ends(0)
      .mentions("note: [signing] has no key, and installed applications refuse unsigned updates\n")
      .leaves(kAppArchive);
}

// The product's own executables, which SmallProject only stands in for.
TEST_F(PackSite, IsTakenByTheInstallerOfTheSameBuild) {
  for (const char* name : {"launcher", "extractor", "lzma64"}) {
    fs::copy_file(std::string(QUORVANE_BIN "/") + name, project_ / "bin/" + name,
                  fs::copy_options::overwrite_existing);
  }
  const std::string java = "#!/bin/sh\n";  // one that runs
  test::writeFile(project_ / "runtime/bin/java", java, 0755);
  build();
  const test::TestHome home;
  const test::MasterFolder installed(home, "Small App");
  const std::vector<std::vector<std::string>> components = {
      {"Small App", "3", kAppArchive},
      {"Quorvane", "5", kUpdaterArchive},
      {"Mac64JRE", "170015", kRuntimeArchive},
  };
  fs::create_directories(home.applicationSupport());
  for (const std::vector<std::string>& component : components) {
    test::Command command;
    command.arguments = {project_ / kSiteInstaller + "/Contents/MacOS/Small App", "--install"};
    command.arguments.insert(command.arguments.end(), component.begin(), component.end());
    command.environment = home.environment();
    command.folder = project_.path();
    const test::Transcript result = test::transcriptOf(command);
    ASSERT_TRUE(result.succeeded());
    EXPECT_EQ("Installed " + component[0] + " " + component[1], test::linesOf(result.out).back());
  }
  EXPECT_EQ(test::readFile(project_ / "app/main.jar"),
            test::readFile(installed / "Quorvane-Small App-3-complete/main.jar"));
  EXPECT_EQ(test::readFile(project_ / "updater/updater.jar"),
            test::readFile(installed / "Quorvane-Quorvane-5-complete/updater.jar"));
  EXPECT_EQ(java, test::readFile(installed / "Quorvane-Mac64JRE-170015-complete/bin/java"));
}

class PackUpdates : public PackSite {
 protected:
  // The settings that the packager's own updater gets from this section of the project.
  std::string settingsOf(const std::string& section, const std::string& updater = "2") {
    project_.replace("[updater]\nfolder = \"updater\"\nversion = \"5\"\n", section);
    build();
    return test::readFile(
        project_.extracted("dist/site/Quorvane-Quorvane-" + updater + "-archive.p2.l2") +
        "/updates.properties");
  }
};

TEST_F(PackUpdates, AreCheckedDailyInTheBackgroundUnlessTheProjectSaysOtherwise) {
  EXPECT_EQ("check=background\ninterval=86400\nkeep=2\n", settingsOf(""));
}

TEST_F(PackUpdates, AreDoneAsTheProjectSays) {
  EXPECT_EQ("check=before_start\ninterval=0\nkeep=5\nurl=https://updates.example.org/beta/\n",
            settingsOf("[updates]\ncheck = \"before_start\"\ninterval = 0\nkeep = 5\n"
                       "url = \"https://updates.example.org/beta\"\n"));
}

TEST_F(PackUpdates, KeepABackslashOfTheUrl) {
  EXPECT_EQ("check=never\ninterval=86400\nkeep=2\nurl=http://example.org/a\\\\b/\n",
            settingsOf("[updates]\ncheck = \"never\"\nurl = 'http://example.org/a\\b/'\n"));
}

TEST_F(PackUpdates, ReachTheUsersUnderALargerNumberOfTheUpdater) {
  EXPECT_EQ("check=background\ninterval=86400\nkeep=3\n",
            settingsOf("[updater]\nversion = 7\n[updates]\nkeep = 3\n", "7"));
}

TEST_F(PackSite, ThatFitsTheInstallerIsSaidToBeWell) {
  build();
  const test::Transcript result = verify();
  result.ends(0);
  const std::string end =
      "site, updater 5: 6 files, the signature is valid\n"
      "site, runtime 170015: 3 files, the signature is valid\n"
      "site, application 3: 5 files, the signature is valid\n"
      "made for linux-x86_64\n" +
      kSiteInstaller + ": all is well\n";
  ASSERT_GT(result.out.size(), end.size());
  EXPECT_EQ(end, result.out.substr(result.out.size() - end.size()));
}

TEST_F(PackSite, WithoutAVersionTextIsFound) {
  build();
  fs::remove(project_ / kAppVersion);
  expectProblem(std::string(kAppVersion) + " cannot be read: No such file or directory");
}

TEST_F(PackSite, WithAVersionTextThatIsNoNumberIsFound) {
  build();
  for (const char* text :
       {"", "\n", "3.1\n", "03\n", "3\n4\n", "<html>", "3 \n", "-3\n", "1000000000000000000\n"}) {
    SCOPED_TRACE(text);
    test::writeFile(project_ / kAppVersion, text);
    expectProblem(std::string(kAppVersion) + " does not contain a whole number of up to 18 digits");
  }
}

TEST_F(PackSite, WithoutTheArchiveOfItsVersionIsFound) {
  build();
  test::writeFile(project_ / kAppVersion, "4\n");
  verify().ends(1).reportsAlso("Quorvane-Small App-4-archive.p2.l2");
}

TEST_F(PackSite, WithAnArchiveOfAnotherVersionIsFound) {
  build();
  test::writeFile(project_ / kAppVersion, "4\n");
  fs::copy(project_ / kAppArchive, project_ / "dist/site/Quorvane-Small App-4-archive.p2.l2");
  verify().fails(
      std::string(kSiteInstaller) +
      " would not work:\n"
      "  site, application: the record qvArcSpBlock_Component says Small App 3, the site "
      "says Small App 4\n"
      "  site, application: version.txt says 3, the site says 4");
}

TEST_F(PackSite, WithAnArchiveThatDoesNotSayWhatItIsIsFound) {
  build();
  replaceApplication({"--key", "release.key"});
  expectProblem(
      "site, application: the record qvArcSpBlock_Component is missing; write the site again with "
      "'quorvane-pack build'");
}

TEST_F(PackSite, WithAnUnsignedArchiveIsFoundWhateverTheInstallerAsksFor) {
  project_.replace("[installer]", "[installer]\nrequire_signature = false");
  build();
  test::writeFile(project_ / "component", "Small App 3");
  replaceApplication({"--special", "Component=component"});
  expectProblem(
      "site, application: Quorvane-Small App-3-archive.p2.l2 is not signed, and updates must be");
}

TEST_F(PackSite, SignedWithAnotherKeyIsFound) {
  build();
  test::writeFile(project_ / "other.key", test::readFile(test::keyFile("second")), 0600);
  test::writeFile(project_ / "component", "Small App 3");
  replaceApplication({"--key", "other.key", "--special", "Component=component"});
  verify().ends(1).reportsAlso("site, application: ");
}

TEST_F(PackSite, IsNotAskedOfALauncherBundle) {
  build();
  project_.pack({"verify", test::bundleIn("dist", "launcher"), "--site", "dist/site"})
      .ends(1)
      .reportsAlso("it takes no updates");
}

}  // namespace
