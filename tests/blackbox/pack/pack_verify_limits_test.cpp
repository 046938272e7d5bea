#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "tests/blackbox/pack/small_project.h"
#include "tests/support/files.h"
#include "tools/formats/launch_file_writer.h"

// Installers that are sound in form and that the product would fail on.

namespace {

const std::string kBundle = test::bundleIn("dist", "offline");

class PackVerifyLimits : public testing::Test {
 protected:
  void build() { ASSERT_TRUE(project_.build().succeeded()); }

  void expectProblems(const std::vector<std::string>& problems,
                      test::Place place = test::Place::here()) {
    std::string wanted = kBundle + " would not work:";
    for (const std::string& problem : problems) {
      wanted += "\n  " + problem;
    }
    project_.pack({"verify", kBundle}).fails(wanted, place);
  }

  std::string tailPath() { return project_ / kBundle + "/Contents/Resources/Tail"; }
  // Writes a params file that the packager would not write.
  void writeParams(const std::vector<std::pair<std::string, std::string>>& properties) {
    constexpr size_t kMarkerSize = 64;
    const std::string path =
        project_ / kBundle + "/Contents/Resources/AppParams.excludefromsigning";
    std::string bytes = test::readFile(path).substr(0, kMarkerSize);
    bytes += test::field(std::to_string(properties.size()));
    for (const auto& [name, value] : properties) {
      bytes += test::field(name) + test::field(value);
    }
    test::writeFile(path, bytes);
  }

  // Puts `to` in place of the last `from` in the Tail record.
  void replaceInTail(const std::string& from, const std::string& to) {
    std::string bytes = test::readFile(tailPath());
    const size_t at = bytes.rfind(from);
    ASSERT_NE(std::string::npos, at);
    test::writeFile(tailPath(), bytes.replace(at, from.size(), to));
  }

  // Puts the bytes of the file `path` in place of those of the Tail's file record `name`.
  void replaceRecordInTail(const std::string& name, const std::string& path) {
    std::string bytes = test::readFile(tailPath());
    const size_t found = bytes.find(test::field(name));
    ASSERT_NE(std::string::npos, found);
    const size_t at = found + test::field(name).size();
    const std::string length = bytes.c_str() + at;
    const std::string other = test::readFile(path);
    bytes.replace(at, test::field(length).size() + std::stoul(length),
                  test::field(std::to_string(other.size())) + other);
    test::writeFile(tailPath(), bytes);
  }

  // An installer that asks for no signatures.
  void buildWithoutAskingForSignatures(bool isSigned) {
    project_.replace("[installer]\n", "[installer]\nrequire_signature = false\n");
    if (!isSigned) {
      project_.replace("[signing]\nkey = \"release.key\"\n", "");
    }
    build();
  }

  // An updater whose launch file is `launch`.
  void writeUpdater(const tools::LaunchFile& launch) {
    test::writeFile(project_ / "updater/QuorvaneLaunch", tools::encodeLaunchFile(launch));
  }
  static tools::LaunchFile launchFile() {
    tools::LaunchFile launch;
    launch.mainClass = "org.example.Updater";
    launch.appName = "Small App";
    launch.classPath = {"updater.jar"};
    return launch;
  }

  test::SmallProject project_;
};

TEST_F(PackVerifyLimits, FindsPropertiesThatAreTooLongTogether) {
  build();
  const std::string half(120000, 'x');
  writeParams({{"require_signature", "true"}, {"a", half}, {"b", half}});
  expectProblems(
      {"the params file: the property b does not fit: all properties together have 200000 bytes; "
       "shorten some"});
}

TEST_F(PackVerifyLimits, FindsPropertiesThatLeaveNoRoomForTheTailRecords) {
  build();
  writeParams({{"require_signature", "true"}, {"a", std::string(199930, 'x')}});
  expectProblems(
      {"the params file: the property update_url does not fit: all properties together have 200000 "
       "bytes; shorten some"});
}

TEST_F(PackVerifyLimits, FindsRuntimeNamesThatCannotNameFolders) {
  build();
  const std::string start = "jre_name in the params file is \"";
  for (const char* name : {"a/b", "a-b"}) {
    writeParams({{"jre_name", name}, {"require_signature", "true"}});
    expectProblems(
        {start + name + "\", which contains a '/' or a '-' and cannot name the runtime's folders"});
  }
  writeParams({{"jre_name", "a/b"}, {"jre_name", "fine"}, {"require_signature", "true"}});
  expectProblems(
      {start + "a/b\", which contains a '/' or a '-' and cannot name the runtime's folders"});
  writeParams({{"jre_name", "quorvane"}, {"require_signature", "true"}});
  expectProblems({start + "quorvane\", which is the name of the updater's folders"});
  writeParams({{"jre_name", "small app"}, {"require_signature", "true"}});
  expectProblems({start + "small app\", which is the name of the application's folders"});
}

TEST_F(PackVerifyLimits, FindsAnUpdaterWithMoreArgumentsThanTheCommandLineHolds) {
  tools::LaunchFile launch = launchFile();
  launch.arguments.assign(494, "x");
  writeUpdater(launch);
  build();
  project_.pack({"verify", kBundle}).ends(0);
  launch.arguments.emplace_back("one more");
  writeUpdater(launch);
  build();
  expectProblems(
      {"updater: its launch file has 495 arguments, which makes a command line of 500 arguments; "
       "it has room for 499"});
}

TEST_F(PackVerifyLimits, FindsAnUpdaterWithAClassPathThatDoesNotFit) {
  tools::LaunchFile launch = launchFile();
  launch.classPath = {std::string(999, 'x')};
  writeUpdater(launch);
  build();
  expectProblems({"updater: its launch file has " + launch.classPath[0] +
                      " in the class path, which it does not contain",
                  "updater: its launch file has a class path entry of 999 bytes, which does not "
                  "fit 1000"});
}

TEST_F(PackVerifyLimits, FindsALaunchFileWithATextThatIsReadInPieces) {
  std::string bytes = tools::encodeLaunchFile(launchFile());
  const std::string mainClass = "org.example.Updater";
  bytes.replace(bytes.find(mainClass), mainClass.size(), std::string(1500, 'x'));
  test::writeFile(project_ / "updater/QuorvaneLaunch", bytes);
  build();
  expectProblems(
      {"updater: its launch file is damaged: Class is 1500 bytes long, at most 1022 are read; "
       "shorten it"});
}

TEST_F(PackVerifyLimits, FindsALaunchFileWithANumberInAnotherForm) {
  test::writeFile(project_ / "updater/QuorvaneLaunch", "0" + tools::encodeLaunchFile(launchFile()));
  build();
  expectProblems(
      {"updater: its launch file has a value in non-canonical form; write it again with "
       "'quorvane-pack launchfile'"});
}

TEST_F(PackVerifyLimits, FindsALaunchFileWithoutAMainClass) {
  std::string bytes = tools::encodeLaunchFile(launchFile());
  const std::string mainClass = "org.example.Updater";
  test::writeFile(project_ / "updater/QuorvaneLaunch",
                  bytes.erase(bytes.find(mainClass), mainClass.size()));
  build();
  expectProblems({"updater: its launch file names no main class"});
}

TEST_F(PackVerifyLimits, FindsAnApplicationWithoutALaunchFile) {
  buildWithoutAskingForSignatures(false);
  ASSERT_TRUE(project_.pack({"archive", "create", "app", "other.p2.l2"}).succeeded());
  replaceRecordInTail("application.p2.l2", project_ / "other.p2.l2");
  expectProblems({"application: the launch file QuorvaneLaunch is missing, so nothing can start"});
}

TEST_F(PackVerifyLimits, FindsASplashImageThatIsNoPng) {
  build();
  replaceInTail("\x89PNG\r\n", "\x88PNG\r\n");
  expectProblems({"updater: nativesplash.png is not a PNG image"});
}

TEST_F(PackVerifyLimits, FindsSignedArchivesWithoutAKeyToCheckThemWith) {
  buildWithoutAskingForSignatures(true);
  const std::string bytes = test::readFile(tailPath());
  replaceInTail(test::field(bytes.c_str() + bytes.find("3082")), test::field(""));
  const std::string what = ".p2.l2 is signed, and the Tail record has no key to verify it with";
  expectProblems(
      {"updater: updater" + what, "runtime: runtime" + what, "application: application" + what});
}

TEST_F(PackVerifyLimits, FindsATailValueThatIsReadAsSomethingElse) {
  build();
  const std::string bytes = test::readFile(tailPath());
  const auto values = [](const char* splash) {
    using test::field;
    return field("Small App") + field("3") + field("170015") + field("5") + field(splash);
  };
  ASSERT_EQ(0u, bytes.find(values("0")));
  test::writeFile(tailPath(), values("soon") + bytes.substr(values("0").size()));
  expectProblems({"min-splash-ms in the Tail record is \"soon\", which is read as 0"});
}

TEST_F(PackVerifyLimits, FindsAnUpdateUrlThatIsNone) {
  build();
  std::string bytes = test::readFile(tailPath());
  const size_t at = bytes.find("http://192.0.2.10/");
  ASSERT_NE(std::string::npos, at);
  test::writeFile(tailPath(), bytes.replace(at, 4, "hypp"));
  expectProblems(
      {"update-url in the Tail record is \"hypp://192.0.2.10/\"; it must begin with http:// or "
       "https://, or be D if the property update_url gives it"});
}

TEST_F(PackVerifyLimits, FindsAnEmptyDecompressionTool) {
  build();
  test::writeFile(project_ / "empty", "");
  replaceRecordInTail("lzma64", project_ / "empty");
  expectProblems({"updater: the file lzma64 is empty"});
}

TEST_F(PackVerifyLimits, TakesSignaturesForAskedForOnceAPropertySaysSo) {
  buildWithoutAskingForSignatures(false);
  writeParams({{"require_signature", "true"}, {"require_signature", "false"}});
  expectProblems(
      {"the params file requires signatures, and the Tail record has no key",
       "updater: updater.p2.l2 is not signed, and the params file requires signatures",
       "runtime: runtime.p2.l2 is not signed, and the params file requires signatures",
       "application: application.p2.l2 is not signed, and the params file requires signatures"});
}

TEST_F(PackVerifyLimits, FindsFilesThatReplaceEachOther) {
  build();
  const std::string sound = test::readFile(tailPath());
  replaceInTail("version.txt", "main.jar");
  expectProblems({"application: two of its entries are named main.jar; one would replace the other",
                  "application: main.jar is not a jar, or is damaged; build it or copy it again"});
  test::writeFile(tailPath(), sound);
  replaceInTail("version.txt", "LIB/other.jar");
  expectProblems(
      {"application: lib/other.jar and LIB/other.jar differ only in case, which most macOS volumes "
       "ignore"});
  test::writeFile(tailPath(), sound);
  replaceInTail("version.txt", "application.p2");
  expectProblems(
      {"application: two of its entries are named application.p2; one would replace the other",
       "application: application.p2 is damaged at byte 0: it ends inside an entry's type; make it "
       "again"});
}

}  // namespace
