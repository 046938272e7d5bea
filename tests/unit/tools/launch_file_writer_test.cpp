#include "tools/formats/launch_file_writer.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "tools/formats/launch_file_text.h"
#include "tools/system/input_error.h"

using namespace std::string_literals;

static tools::LaunchFile fullFile(long version) {
  tools::LaunchFile file;
  file.version = version;
  file.mainClass = "a.Main";
  file.updateClass = "a.Update";
  file.appName = "A b";
  file.icon = "a.icns";
  file.urlRequired = true;
  file.maximumHeapMegabytes = 512;
  file.initialHeapMegabytes = 64;
  file.classPath = {"a.jar", "lib/b c.jar"};
  file.arguments = {"x", "", "Größe"};
  file.compatibilityClass = version >= 3 ? "a.Probe" : "";
  file.postInstallClass = version >= 4 ? "a.PostInstall" : "";
  file.preUninstallClass = version >= 4 ? "a.PreUninstall" : "";
  if (version >= 5) {
    file.jvmOptions = {"-ea"};
  }
  file.mustFork = version >= 6;
  return file;
}

// What version 2 holds too.
static std::string commonBytes(const std::string& version) {
  return version + "\0a.Main\0a.Update\0A b\0a.icns\0"s + "1\0"s + "512\0"s + "64\0"s + "2\0"s +
         "a.jar\0lib/b c.jar\0"s + "3\0x\0\0Größe\0"s;
}

TEST(EncodeLaunchFile, WritesTheFieldsOfEachVersion) {
  const std::string third = "a.Probe\0"s;
  const std::string fourth = third + "a.PostInstall\0a.PreUninstall\0"s;
  const std::string fifth = fourth + "1\0-ea\0"s;
  EXPECT_EQ(commonBytes("1"), tools::encodeLaunchFile(fullFile(1)));
  EXPECT_EQ(commonBytes("2"), tools::encodeLaunchFile(fullFile(2)));
  EXPECT_EQ(commonBytes("3") + third, tools::encodeLaunchFile(fullFile(3)));
  EXPECT_EQ(commonBytes("4") + fourth, tools::encodeLaunchFile(fullFile(4)));
  EXPECT_EQ(commonBytes("5") + fifth, tools::encodeLaunchFile(fullFile(5)));
  EXPECT_EQ(commonBytes("6") + fifth + "1\0"s, tools::encodeLaunchFile(fullFile(6)));
}

TEST(DecodeLaunchFile, ReadsBackWhatWasWritten) {
  for (long version = 1; version <= 6; ++version) {
    const std::string bytes = tools::encodeLaunchFile(fullFile(version));
    EXPECT_EQ(bytes, tools::encodeLaunchFile(tools::decodeLaunchFile(bytes))) << version;
  }
}

TEST(LaunchFileText, ReadsBackWhatWasWritten) {
  for (long version = 1; version <= 6; ++version) {
    const std::string text = tools::textOfLaunchFile(fullFile(version));
    EXPECT_EQ(tools::encodeLaunchFile(fullFile(version)),
              tools::encodeLaunchFile(tools::launchFileFromText(text)))
        << text;
  }
}

TEST(LaunchFileText, KeepsQuotesBackslashesAndLineEnds) {
  tools::LaunchFile file = fullFile(6);
  file.arguments = {"\"", "'", "\\", "a\nb", "'\"\\\n\t"};
  const std::string text = tools::textOfLaunchFile(file);
  EXPECT_EQ(file.arguments, tools::launchFileFromText(text).arguments) << text;
}

static std::string refusalOf(const std::function<void()>& code) {
  try {
    code();
  } catch (const tools::InputError& error) {
    return error.what();
  }
  return "(accepted)";
}

static std::string encodingRefusal(const std::function<void(tools::LaunchFile*)>& change) {
  tools::LaunchFile file;
  file.appName = "A";
  file.version = 2;
  change(&file);
  return refusalOf([&] { tools::encodeLaunchFile(file); });
}

TEST(EncodeLaunchFile, RefusesAnUnknownVersion) {
  for (const long version : {-1L, 0L, 7L}) {
    EXPECT_EQ("the launch file's version is " + std::to_string(version) + ", known are 1 to 6",
              encodingRefusal([&](auto* file) { file->version = version; }));
  }
}

TEST(EncodeLaunchFile, RefusesAValueThatItsVersionHasNoFieldFor) {
  EXPECT_EQ(
      "the compatibility class is set, but version 2 of the launch file has no such field; use "
      "version 3 or leave it out",
      encodingRefusal([](auto* file) { file->compatibilityClass = "a.Probe"; }));
  EXPECT_NE("(accepted)", encodingRefusal([](auto* file) { file->postInstallClass = "a"; }));
  EXPECT_NE("(accepted)", encodingRefusal([](auto* file) { file->preUninstallClass = "a"; }));
  EXPECT_NE("(accepted)", encodingRefusal([](auto* file) { file->jvmOptions = {"-ea"}; }));
  EXPECT_NE("(accepted)", encodingRefusal([](auto* file) { file->mustFork = true; }));
  EXPECT_EQ("(accepted)", encodingRefusal([](auto*) {}));
}

TEST(EncodeLaunchFile, RefusesANameThatCannotNameAnExecutable) {
  EXPECT_NE("(accepted)", encodingRefusal([](auto* file) { file->appName = ""; }));
  EXPECT_NE("(accepted)", encodingRefusal([](auto* file) { file->appName = "../A"; }));
}

TEST(EncodeLaunchFile, RefusesNegativeSizesAndTextsTooLongForTheirField) {
  EXPECT_NE("(accepted)", encodingRefusal([](auto* file) { file->maximumHeapMegabytes = -1; }));
  EXPECT_NE("(accepted)", encodingRefusal([](auto* file) { file->initialHeapMegabytes = -1; }));
  EXPECT_EQ("(accepted)",
            encodingRefusal([](auto* file) { file->mainClass = std::string(1022, 'a'); }));
  EXPECT_NE("(accepted)",
            encodingRefusal([](auto* file) { file->mainClass = std::string(1023, 'a'); }));
  EXPECT_NE("(accepted)", encodingRefusal([](auto* file) { file->arguments = {"a\0b"s}; }));
}

TEST(DecodeLaunchFile, RefusesEveryPrefixOfALaunchFile) {
  const std::string bytes = tools::encodeLaunchFile(fullFile(6));
  for (size_t length = 0; length < bytes.size(); ++length) {
    EXPECT_NE("(accepted)", refusalOf([&] { tools::decodeLaunchFile(bytes.substr(0, length)); }))
        << length;
  }
}

TEST(DecodeLaunchFile, SaysWhatIsWrong) {
  EXPECT_EQ(
      "the launch file is damaged at byte 0: LaunchFile VER is 'PK', expected a decimal number; it "
      "is truncated or not a launch file",
      refusalOf([] { tools::decodeLaunchFile("PK\0"s); }));
  EXPECT_EQ(
      "the launch file is damaged at byte 2: it ends inside Class; it is truncated or not a launch "
      "file",
      refusalOf([] { tools::decodeLaunchFile("1\0Ma"s); }));
  EXPECT_EQ("2 bytes follow the last field of version 1; the version or a count is wrong",
            refusalOf([] { tools::decodeLaunchFile(commonBytes("1") + "x\0"s); }));
  EXPECT_EQ(
      "the launch file is damaged at byte 14: Classpath Count is '-1', expected a decimal number; "
      "it is truncated or not a launch file",
      refusalOf(
          [] { tools::decodeLaunchFile("1\0M\0\0A\0\0"s + "0\0"s + "0\0"s + "0\0"s + "-1\0"s); }));
}

TEST(LaunchFileText, RefusesWhatIsNoLaunchFile) {
  EXPECT_EQ(0u, refusalOf([] {
                  tools::launchFileFromText("class = 'a'\nname = 'b'\n");
                }).find("unknown key \"name\"; known are version, class, update_class, "));
  EXPECT_EQ("\"class\" must be a string",
            refusalOf([] { tools::launchFileFromText("class = 1"); }));
  EXPECT_EQ("\"version\" must be a whole number",
            refusalOf([] { tools::launchFileFromText("version = 1.5"); }));
  EXPECT_EQ("\"must_fork\" must be true or false",
            refusalOf([] { tools::launchFileFromText("must_fork = 1"); }));
  EXPECT_EQ("\"arguments\" must be a list of strings",
            refusalOf([] { tools::launchFileFromText("arguments = ['a', 1]"); }));
  EXPECT_EQ("\"class_path\" must be a list of strings",
            refusalOf([] { tools::launchFileFromText("class_path = 'a.jar'"); }));
  EXPECT_EQ(0u,
            refusalOf([] { tools::launchFileFromText("class = 'a'\nclass"); }).find("line 2: "));
}

TEST(LaunchFileText, RefusesTextThatIsNoUtf8) {
  tools::LaunchFile file = fullFile(6);
  file.icon = "\xff";
  EXPECT_EQ("the launch file contains text that is not UTF-8, which cannot be shown",
            refusalOf([&] { tools::textOfLaunchFile(file); }));
}

TEST(EncodeOptionsFile, WritesTheCountAndTheOptions) {
  EXPECT_EQ("0\0"s, tools::encodeOptionsFile({}));
  EXPECT_EQ("2\0-Xss2m\0-Da=b c\0"s, tools::encodeOptionsFile({"-Xss2m", "-Da=b c"}));
}
