#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/blackbox/pack/small_project.h"
#include "tests/support/files.h"
#include "tests/support/object_headers.h"
#include "tests/support/temp_folder.h"

// What a project's bundles say of themselves in Info.plist, as another program's parser reads it.

namespace {

const char* const kBundles[] = {"launcher", "offline", "online"};
const char kOfflineBundle[] = "offline";

test::Transcript checkPlist(const std::string& path, const std::vector<std::string>& added = {}) {
  test::Command command;
  command.arguments = {"/usr/bin/env", "python3",
                       QUORVANE_SOURCE "/tests/blackbox/pack/info_plist.py", path};
  command.arguments.insert(command.arguments.end(), added.begin(), added.end());
  return test::transcriptOf(command);
}

class PackInfoPlist : public testing::Test {
 protected:
  void addKeys(const std::string& lines) {
    project_.replace("icon = \"small.icns\"\n", "icon = \"small.icns\"\n" + lines);
  }
  void addSection(const std::string& lines) {
    project_.replace("[updater]", lines + "\n[updater]");
  }

  // Builds, and returns what the bundle's Info.plist contains, as JSON.
  std::string plistOf(const std::string& bundle, const std::vector<std::string>& added = {}) {
    const test::Transcript built = project_.build();
    built.ends(0);
    err_ = built.err;
    const test::Transcript checked =
        checkPlist(project_ / test::bundleIn("dist", bundle) + "/Contents/Info.plist", added);
    checked.ends(0);
    return checked.out;
  }

  // Whether Info.plist of the offline installer contains `entries`, a part of its JSON.
  void expectEntries(const std::string& entries, const std::vector<std::string>& added = {}) {
    const std::string json = plistOf(kOfflineBundle, added);
    EXPECT_NE(std::string::npos, json.find(entries)) << json << "without " << entries;
  }

  void writeMacLibrary(const std::string& path, uint32_t oldestSystem) {
    constexpr uint32_t kMacos = 1;
    test::writeFile(project_ / path, test::machFile(test::MACH_X86_64, test::MACH_LIBRARY,
                                                    {test::buildVersion(kMacos, oldestSystem)}));
  }

  // Builds for macOS, and expects that system in the Info.plist of each bundle.
  void minimumSystemIs(const std::string& version) {
    const test::Result built = project_.build({"--target", "macos-x86_64"});
    EXPECT_EQ(0, built.status) << built.err;
    for (const char* kind : {"offline", "online", "launcher"}) {
      const test::Result checked =
          checkPlist(project_ / (std::string("dist/bundles/macos-x86_64/") + kind +
                                 "/Small App.app/Contents/Info.plist"),
                     {});
      EXPECT_NE(std::string::npos,
                checked.out.find("\"LSMinimumSystemVersion\": \"" + version + "\""))
          << kind << checked.out << checked.err;
    }
  }

  test::SmallProject project_;
  std::string err_;
};

TEST_F(PackInfoPlist, OfEveryBundleIsAsDocumented) {
  for (const char* bundle : kBundles) {
    plistOf(bundle);
  }
}

TEST_F(PackInfoPlist, OfAPlainProjectHasTheDefaults) {
  EXPECT_EQ(
      "{\"CFBundleDevelopmentRegion\": \"en\", \"CFBundleDisplayName\": \"Small App\", "
      "\"CFBundleExecutable\": \"Small App\", \"CFBundleIconFile\": \"Small App.icns\", "
      "\"CFBundleIdentifier\": \"org.example.small.installer\", "
      "\"CFBundleInfoDictionaryVersion\": \"6.0\", \"CFBundleName\": \"Small App\", "
      "\"CFBundlePackageType\": \"APPL\", \"CFBundleShortVersionString\": \"3\", "
      "\"CFBundleVersion\": \"3\", \"LSMinimumSystemVersion\": \"10.13\", "
      "\"NSHighResolutionCapable\": true, \"NSPrincipalClass\": \"NSApplication\"}\n",
      plistOf(kOfflineBundle));
}

TEST_F(PackInfoPlist, NamesTheSystemThatTheExecutablesNeed) {
  minimumSystemIs("11.0");
}

TEST_F(PackInfoPlist, NamesTheSystemOfALibraryThatNeedsANewerOne) {
  writeMacLibrary("runtime/lib/server/libjvm.dylib", 0x000d0200);
  minimumSystemIs("13.2");
  writeMacLibrary("runtime/lib/libolder.dylib", 0x000a0f00);
  minimumSystemIs("13.2");
  writeMacLibrary("app/natives/libnewer.dylib", 0x000e0000);
  minimumSystemIs("14.0");
}

TEST_F(PackInfoPlist, HasADisplayNameWithAnyCharacters) {
  addKeys("display_name = \"A/B: <Größe> & 中文 \\\"-\\\"\"\n");
  const std::string name = R"(A/B: <Größe> & 中文 \"-\")";
  expectEntries("\"CFBundleDisplayName\": \"" + name + "\", ");
  expectEntries("\"CFBundleName\": \"" + name + "\", ");
  expectEntries("\"CFBundleExecutable\": \"Small App\", ");
}

TEST_F(PackInfoPlist, HasTheVersionForUsersBesideThatOfTheBuild) {
  addKeys("display_version = \"1.4.2\"\n");
  expectEntries("\"CFBundleShortVersionString\": \"1.4.2\", \"CFBundleVersion\": \"3\", ");
  EXPECT_EQ("", err_);
}

TEST_F(PackInfoPlist, WithAVersionThatAppleDoesNotDocumentGetsAWarning) {
  const char* const versions[] = {"1.4-beta", "1.2.3.4", ".1", "1.", "1..2"};
  addKeys("display_version = \"VERSION\"\n");
  std::string before = "VERSION";
  for (const std::string version : versions) {
    project_.replace("\"" + before + "\"", "\"" + version + "\"");
    before = version;
    expectEntries("\"CFBundleShortVersionString\": \"" + version + "\", ");
    EXPECT_EQ("quorvane-pack: quorvane.toml: [application] display_version is \"" + version +
                  "\"; Apple asks for one to three numbers like 1.4.2, and its App Store refuses "
                  "others\n",
              err_);
  }
}

TEST_F(PackInfoPlist, HasAVersionForUsersOfAtMostSixtyBytes) {
  const std::string longest(60, '7');
  addKeys("display_version = \"" + longest + "\"\n");
  expectEntries("\"CFBundleShortVersionString\": \"" + longest + "\", ");
  project_.replace(longest, longest + "7");
  const test::Result result = project_.build();
  EXPECT_EQ(1, result.status);
  EXPECT_EQ(
      "quorvane-pack: quorvane.toml: [application] display_version has 61 bytes; downloads are "
      "named after it, so it must have at most 60\n",
      result.err);
}

TEST_F(PackInfoPlist, KeepsAVersionOfEighteenDigits) {
  project_.replace("version = \"3\"", "version = \"123456789012345678\"");
  expectEntries("\"CFBundleVersion\": \"123456789012345678\", ");
}

TEST_F(PackInfoPlist, HasCategoryAndCopyright) {
  addKeys("category = \"productivity\"\ncopyright = \"© 2026 Example & Co.\"\n");
  expectEntries("\"LSApplicationCategoryType\": \"public.app-category.productivity\", ");
  expectEntries("\"NSHumanReadableCopyright\": \"© 2026 Example & Co.\", ");
}

TEST_F(PackInfoPlist, TakesTheWholeIdentifierOfACategory) {
  addKeys("category = \"public.app-category.video\"\n");
  expectEntries("\"LSApplicationCategoryType\": \"public.app-category.video\", ");
}

TEST_F(PackInfoPlist, OfEveryBundleClaimsTheUrlSchemes) {
  addKeys("url_schemes = [\"small\", \"small+x\"]\n");
  for (const char* bundle : kBundles) {
    const std::string json = plistOf(bundle);
    EXPECT_NE(std::string::npos,
              json.find("\"CFBundleURLTypes\": [{\"CFBundleTypeRole\": \"Viewer\", "
                        "\"CFBundleURLName\": \"org.example.small\", \"CFBundleURLSchemes\": "
                        "[\"small\", \"small+x\"]}], "))
        << json;
  }
}

TEST_F(PackInfoPlist, ClaimsDocumentsByTheirExtensions) {
  addKeys("document_types = [{name = \"Letter\", extensions = [\"letter\", \"ltr\"]}]\n");
  expectEntries(
      "\"CFBundleDocumentTypes\": [{\"CFBundleTypeExtensions\": [\"letter\", \"ltr\"], "
      "\"CFBundleTypeName\": \"Letter\", \"CFBundleTypeRole\": \"Viewer\", \"LSHandlerRank\": "
      "\"Default\"}], ");
  EXPECT_EQ(std::string::npos, plistOf(kOfflineBundle).find("TypeDeclarations"));
}

// The system does not look at extensions beside content types: they belong to the types themselves.
TEST_F(PackInfoPlist, DeclaresTheContentTypesThatTheSystemDoesNotKnow) {
  addKeys(
      "document_types = [\n"
      "  {name = \"Letter\", role = \"Editor\", extensions = [\"letter\"], content_types = "
      "[\"org.example.small.letter\"]},\n"
      "  {name = \"Foreign\", extensions = [\"alien\"], content_types = [\"com.example.alien\"]},\n"
      "  {name = \"Text\", extensions = [\"txt\"], content_types = [\"public.plain-text\"]}]\n");
  const auto declaration = [](const std::string& name, const std::string& type,
                              const std::string& extension) {
    return "[{\"UTTypeConformsTo\": [\"public.data\"], \"UTTypeDescription\": \"" + name +
           "\", \"UTTypeIdentifier\": \"" + type +
           "\", \"UTTypeTagSpecification\": {\"public.filename-extension\": [\"" + extension +
           "\"]}}]";
  };
  expectEntries("\"UTExportedTypeDeclarations\": " +
                declaration("Letter", "org.example.small.letter", "letter") +
                ", \"UTImportedTypeDeclarations\": " +
                declaration("Foreign", "com.example.alien", "alien") + "}");
  expectEntries("\"CFBundleTypeRole\": \"Editor\", ");
  expectEntries("\"LSItemContentTypes\": [\"public.plain-text\"]}]");
}

TEST_F(PackInfoPlist, GivesADocumentTypeItsIcon) {
  addKeys(
      "document_types = [{name = \"A\", extensions = [\"a\"]}, {name = \"B\", extensions = "
      "[\"b\"], icon = \"small.icns\"}]\n");
  expectEntries(
      "{\"CFBundleTypeExtensions\": [\"b\"], \"CFBundleTypeIconFile\": "
      "\"document-2.icns\", ");
  EXPECT_EQ(test::readFile(project_ / "small.icns"),
            test::readFile(project_ / test::bundleIn("dist", kOfflineBundle) +
                           "/Contents/Resources/document-2.icns"));
}

TEST_F(PackInfoPlist, TakesFurtherEntriesOfEveryKind) {
  addSection(
      "[info_plist]\nNSCameraUsageDescription = \"Scans & reads\"\nLSUIElement = true\n"
      "LSMinimumSystemVersion = \"12.0\"\nNumber = -5\nNested = {list = [1, \"b\", false, {}]}\n");
  expectEntries(
      "\"LSMinimumSystemVersion\": \"12.0\", \"LSUIElement\": true, "
      "\"NSCameraUsageDescription\": \"Scans & reads\", ",
      {"LSUIElement", "NSCameraUsageDescription", "Number", "Nested"});
  expectEntries("\"Nested\": {\"list\": [1, \"b\", false, {}]}, \"Number\": -5}",
                {"LSUIElement", "NSCameraUsageDescription", "Number", "Nested"});
}

TEST_F(PackInfoPlist, MayNameAnotherExecutableWithinAnEntry) {
  addSection("[info_plist]\nAnother = {CFBundleExecutable = \"Other\"}\n");
  const test::Result built = project_.build();
  EXPECT_EQ(0, built.status) << built.err;
  const test::Result result =
      test::runPack(project_.path(), {"verify", test::bundleIn("dist", kOfflineBundle)});
  EXPECT_EQ(0, result.status) << result.err;
}

TEST_F(PackInfoPlist, AllowsPlainHttpForTheOneServerOfAPlainUpdateUrl) {
  project_.replace("[installer]",
                   "[installer]\nupdate_url = \"http://User@Updates.example.org:80/x\"");
  expectEntries(
      "\"NSAppTransportSecurity\": {\"NSExceptionDomains\": {\"updates.example.org\": "
      "{\"NSExceptionAllowsInsecureHTTPLoads\": true}}}, ");
  EXPECT_EQ(
      "quorvane-pack: quorvane.toml: [installer] update_url is plain http, for which Info.plist "
      "gets an exception for updates.example.org: whoever controls the network sees what is "
      "installed and can hold back updates; use https\n",
      err_);
  // The Launcher downloads nothing.
  EXPECT_EQ(std::string::npos, plistOf("launcher").find("NSAppTransportSecurity"));
}

TEST_F(PackInfoPlist, AllowsPlainHttpForAServerOfTheLocalNetwork) {
  project_.replace("[installer]", "[installer]\nupdate_url = \"http://URL/\"");
  std::string before = "URL";
  for (const std::string host : {"192.0.2.7:8080", "server", "build.local", "[2001:db8::1]:80"}) {
    project_.replace("http://" + before + "/", "http://" + host + "/");
    before = host;
    expectEntries("\"NSAppTransportSecurity\": {\"NSAllowsLocalNetworking\": true}, ");
  }
}

TEST_F(PackInfoPlist, OfAnUpdateUrlOfThisMachineHasTheExceptionWithoutAWarning) {
  project_.replace("[installer]", "[installer]\nupdate_url = \"http://URL/\"");
  std::string before = "URL";
  for (const std::string host : {"127.0.0.1:8080", "localhost", "[::1]:80"}) {
    project_.replace("http://" + before + "/", "http://" + host + "/");
    before = host;
    expectEntries("\"NSAppTransportSecurity\": {\"NSAllowsLocalNetworking\": true}, ");
    EXPECT_EQ("", err_);
  }
}

TEST_F(PackInfoPlist, AllowsPlainHttpForAServerThatThePropertyNames) {
  project_.replace("[installer]",
                   "[installer]\nupdate_url = \"D\"\nproperties = {update_url = "
                   "\"http://updates.example.org/\"}");
  expectEntries("\"NSExceptionDomains\": {\"updates.example.org\": ");
}

TEST_F(PackInfoPlist, OfAnHttpsUpdateUrlHasNoExceptionAndNoWarning) {
  project_.replace("[installer]", "[installer]\nupdate_url = \"https://updates.example.org/\"");
  EXPECT_EQ(std::string::npos, plistOf(kOfflineBundle).find("NSAppTransportSecurity"));
  EXPECT_EQ("", err_);
}

// The menu of an installed application has the name of its launch file, which also names an
// executable: there a '/' is a division slash.
TEST_F(PackInfoPlist, GivesTheLaunchFileTheDisplayName) {
  addKeys("display_name = \"Größe 1/2\"\n");
  ASSERT_TRUE(project_.build().succeeded());
  const std::string folder = project_.extracted("dist/site/Quorvane-Small App-3-archive.p2.l2");
  project_.pack({"launchfile", "read", folder + "/QuorvaneLaunch"})
      .mentions("app_name = 'Größe 1\u22152'");
}

// Each is one in a new project file, without its '#'.
TEST_F(PackInfoPlist, TakesTheExamplesThatANewProjectFileShows) {
  const test::TempFolder folder;
  test::makeJar(folder.path(), "a.jar", "Main-Class: Main\n");
  test::writeFile(folder / "release.key", test::readFile(project_ / "release.key"), 0600);
  ASSERT_TRUE(test::runPack(folder.path(), {"init", "a.jar"}).succeeded());
  std::string examples;
  for (const std::string& line : test::linesOf(test::readFile(folder / "quorvane.toml"))) {
    for (const char* start : {"display_name", "display_version", "category", "copyright",
                              "url_schemes", "document_types", "[info_plist]", "NSCamera"}) {
      if (line.rfind(std::string("# ") + start, 0) == 0) {
        examples += line.substr(2) + "\n";
      }
    }
  }
  EXPECT_EQ(8u, test::linesOf(examples).size()) << examples;
  addKeys(examples);
  expectEntries("\"CFBundleShortVersionString\": \"1.4.2\", ", {"NSCameraUsageDescription"});
}

TEST(InfoPlistCheck, FindsMissingUnknownAndWronglyTypedEntries) {
  const test::TempFolder folder;
  test::writeFile(folder / "Info.plist",
                  "<plist version=\"1.0\"><dict><key>CFBundleVersion</key><string>1.b</string>"
                  "<key>NSHighResolutionCapable</key><string>true</string>"
                  "<key>CFBundleURLTypes</key><dict/><key>Odd</key><true/></dict></plist>");
  const test::Transcript checked = checkPlist(folder / "Info.plist");
  checked.ends(1).reportsAlso("CFBundleName is missing");
  const std::vector<std::string> faults = test::linesOf(checked.err);
  ASSERT_LT(4u, faults.size());
  EXPECT_EQ((std::vector<std::string>{"Info.plist.CFBundleVersion is '1.b'",
                                      "Info.plist.NSHighResolutionCapable is str, not bool",
                                      "Info.plist.CFBundleURLTypes is no list, or an empty one",
                                      "Info.plist has the unknown entry Odd"}),
            (std::vector<std::string>{faults.begin(), faults.begin() + 4}));
}

}  // namespace
