#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/files.h"
#include "tests/support/temp_folder.h"
#include "tools/bundle/bundle_reader.h"
#include "tools/bundle/bundle_writer.h"
#include "tools/bundle/output_folder.h"
#include "tools/formats/installer_stream.h"
#include "tools/java/jar_manifest.h"
#include "tools/java/java_runtime.h"
#include "tools/project/project_file.h"
#include "tools/project/project_text.h"
#include "tools/system/input_error.h"

using Texts = std::vector<std::string>;

TEST(Manifest, JoinsContinuedLinesAndStopsBehindTheMainSection) {
  const tools::JarManifest manifest = tools::parseManifest(
      "Manifest-Version: 1.0\r\nMain-Class: org.example.very.long\r\n .Main\r\nclass-path:  "
      "a.jar\r\n "
      "  lib/b.jar \r\n\r\nName: other\r\nMain-Class: org.example.Other\r\n");
  EXPECT_EQ("org.example.very.long.Main", manifest.mainClass);
  EXPECT_EQ((Texts{"a.jar", "lib/b.jar"}), manifest.classPath);
}

TEST(Manifest, OfNoTextOrLinesWithoutColonSaysNothing) {
  EXPECT_EQ("", tools::parseManifest("").mainClass);
  EXPECT_EQ("", tools::parseManifest(" Main-Class\nMain-Class\n").mainClass);
}

TEST(RuntimeNumber, GrowsWithTheVersionThatTheRuntimeStates) {
  const test::TempFolder folder;
  const auto numberOf = [&](const std::string& version) {
    test::writeFile(folder / "release", "X=\"1\"\nJAVA_VERSION=\"" + version + "\"\n");
    return tools::runtimeNumber(folder.path());
  };
  EXPECT_EQ("170015", numberOf("17.0.15"));
  EXPECT_EQ("210000", numberOf("21"));
  EXPECT_EQ("170100", numberOf("17.1-ea"));
  EXPECT_EQ("10800", numberOf("1.8.0_452"));
  EXPECT_EQ("", numberOf("unknown"));
}

TEST(SuggestedName, IsMadeOfTheWordsInFrontOfAVersion) {
  EXPECT_EQ("My App", tools::suggestedName("/x/my-app-1.2-SNAPSHOT.jar"));
  EXPECT_EQ("Hello", tools::suggestedName("hello.jar"));
  EXPECT_EQ("Photo Tool2", tools::suggestedName("photo_tool2/"));
  EXPECT_EQ("A B", tools::suggestedName("..a:b.jar"));
  EXPECT_EQ("2048", tools::suggestedName("2048.jar"));
  EXPECT_EQ("", tools::suggestedName("--.jar"));
}

TEST(SuggestedIdentifier, IsTheMainClassesPackage) {
  EXPECT_EQ("org.example.tool", tools::suggestedIdentifier("org.example.tool.Main", "X"));
  EXPECT_EQ("org.example.my-tool", tools::suggestedIdentifier("org.example.my_tool.Main", "X"));
  EXPECT_EQ("org.example.myapp", tools::suggestedIdentifier("Main", "My App"));
  EXPECT_EQ("org.example.application", tools::suggestedIdentifier("Main", "\xe4\xb8\xad"));
}

TEST(ProjectText, IsReadAsWhatItWasMadeOf) {
  tools::NewProject wanted;
  wanted.name = "G\xc3\xbcte \"1\" \\ '2'";
  wanted.identifier = "org.example";
  wanted.folder = "a\nb";
  wanted.classPath = {"a b.jar", "c'.jar"};
  wanted.mainClass = "Main";
  wanted.key = "release.key";
  const test::TempFolder folder;
  test::writeFile(folder / "quorvane.toml", tools::projectText(wanted));
  const tools::Project project = tools::readProject(folder / "quorvane.toml");
  EXPECT_EQ(wanted.name, project.name);
  EXPECT_EQ("1", project.version);
  EXPECT_EQ(folder / wanted.folder, project.appFolder);
  EXPECT_EQ(wanted.classPath, project.classPath);
  EXPECT_EQ(folder / "release.key", project.key);
  EXPECT_TRUE(project.requireSignature);
}

TEST(PlistText, IsWhatTheBundleWriterWrote) {
  const test::TempFolder folder;
  test::writeFile(folder / "program", "program", 0755);
  tools::Bundle bundle;
  bundle.path = folder / "A.app";
  bundle.name = "A";
  bundle.identifier = "org.example";
  bundle.version = "1";
  bundle.executable = folder / "program";
  bundle.executableName = "A & <B>";
  tools::writeBundle(bundle);
  const std::string plist = test::readFile(bundle.path + "/Contents/Info.plist");
  EXPECT_EQ("A & <B>", tools::plistText(plist, "CFBundleExecutable"));
  EXPECT_EQ("A", tools::plistText(plist, "CFBundleName"));
  EXPECT_EQ("A", tools::plistText(plist, "CFBundleDisplayName"));
  EXPECT_EQ("", tools::plistText(plist, "CFBundleIconFile"));
  EXPECT_EQ(tools::executableIn(bundle), tools::executableOfBundle(bundle.path));
}

TEST(PlistText, IsThatOfTheOutermostTableAlone) {
  const std::string plist =
      "<?xml version=\"1.0\"?>\n<!DOCTYPE plist>\n<!-- <key>CFBundleExecutable</key> -->\n"
      "<plist version=\"1.0\"><dict><key>A</key><array><dict><key>CFBundleExecutable</key>"
      "<string>inner</string></dict></array><key>B</key><string>CFBundleExecutable</string>"
      "<key>CFBundleExecutable</key><string>outer</string></dict></plist>";
  EXPECT_EQ("outer", tools::plistText(plist, "CFBundleExecutable"));
}

TEST(PlistText, IsEmptyForAValueOfAnotherKind) {
  EXPECT_EQ("", tools::plistText("<plist><dict><key>A</key><true/><key>B</key><string>b</string>"
                                 "</dict></plist>",
                                 "A"));
}

TEST(ExecutableOfBundle, IsNoneWhereInfoPlistIsNoPropertyList) {
  const test::TempFolder folder;
  const std::string plist = folder / "A.app/Contents/Info.plist";
  const std::pair<const char*, const char*> lists[] = {
      {"bplist00", "breaks off"},
      {"<plist><dict><key>CFBundleExecutable</key><string>A</string>", "breaks off"},
      {"<html></html>", "is not a property list"},
      {"<plist><array></array></plist>", "has <array> in place of <dict>"}};
  for (const auto& [text, fault] : lists) {
    test::writeFile(plist, text);
    try {
      ADD_FAILURE() << tools::executableOfBundle(folder / "A.app");
    } catch (const tools::InputError& error) {
      EXPECT_EQ(plist + " " + fault + "; it must be a property list in XML", error.what());
    }
  }
}

TEST(MadeIn, TakesNoPathOutsideOfTheFolder) {
  const test::TempFolder folder;
  test::writeFile(folder / tools::OUTPUT_LIST,
                  "Made by quorvane-pack build, which replaces what is listed here:\n"
                  "..\n.\n../x\n/tmp\n\na.app\n");
  EXPECT_EQ(Texts{"a.app"}, tools::madeIn(folder.path()));
  test::writeFile(folder / tools::OUTPUT_LIST, "a.app\n");
  EXPECT_EQ(Texts{}, tools::madeIn(folder.path()));
}

static std::string streamError(const std::string& bytes) {
  const test::TempFolder folder;
  test::writeFile(folder / "Tail", bytes);
  try {
    tools::InstallerStream("" + (folder / "Tail"), 0).next(folder / "out");
  } catch (const std::runtime_error& error) {
    const std::string text = error.what();
    return text.substr(text.find("Tail") + 4);
  }
  return "no error";
}

TEST(InstallerStream, RefusesRecordsThatAreCutShortOrOfAnotherKind) {
  using test::field;
  EXPECT_EQ("no error", streamError(field("0") + field("a") + field("1") + "x"));
  EXPECT_EQ(" is damaged at byte 0: it ends inside a record's type", streamError(""));
  EXPECT_EQ(" is damaged at byte 2: it ends inside a record's name",
            streamError(field("0") + "ab"));
  EXPECT_EQ(": a record's type is '1'; expected 0, a regular file", streamError(field("1")));
  EXPECT_EQ(" is damaged at byte 4: the length of a is '-1', expected a decimal number",
            streamError(field("0") + field("a") + field("-1")));
  EXPECT_EQ(
      " is damaged at byte 4: the length of a is '9999999999999999999', expected a decimal number",
      streamError(field("0") + field("a") + field("9999999999999999999")));
  EXPECT_EQ(" ends inside a: it should have 5 bytes, but only 1 are left",
            streamError(field("0") + field("a") + field("5") + "x"));
  EXPECT_EQ(0u, streamError(field("0") + field("../a") + field("0"))
                    .find(": the record '../a' would not be extracted: "));
  EXPECT_EQ(
      " is damaged at byte 2: a record's name is longer than the 1022 bytes that are read of it",
      streamError(field("0") + std::string(5000, 'a')));
}
