#include "tools/formats/tail_writer.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <string>
#include <vector>

#include "formats/tail_fields.h"
#include "formats/tail_marker.h"
#include "launcher/installation/tail_reader.h"
#include "support/encoding/field_reader.h"
#include "support/owned.h"
#include "tests/support/capture.h"
#include "tests/support/files.h"
#include "tests/support/format_examples.h"
#include "tests/support/temp_folder.h"
#include "tools/system/input_error.h"

using Texts = std::vector<std::string>;

static tools::Tail fullTail() {
  tools::Tail tail;
  tail.appName = "Demo";
  tail.appVersion = "12";
  tail.jreVersion = "1407";
  tail.guVersion = "3";
  tail.minSplashMs = 500;
  tail.publicKeyHex = "3082010a";
  tail.canOverrideSplash = true;
  tail.installType = tools::INSTALL_FOR_ALL;
  tail.silentParameter = "-quiet";
  tail.requiredJavaVersion = "17";
  tail.updateUrl = "http://127.0.0.1/updates/";
  return tail;
}

static const Texts kFullValues = {"Demo",
                                  "12",
                                  "1407",
                                  "3",
                                  "500",
                                  "3082010a",
                                  "1",
                                  "perm_all",
                                  "-quiet",
                                  "17",
                                  "http://127.0.0.1/updates/"};

static std::string messageOf(const std::function<void()>& code) {
  try {
    code();
  } catch (const tools::InputError& error) {
    return error.what();
  }
  return "no error";
}

static std::string refusal(const std::function<void(tools::Tail*)>& change) {
  tools::Tail tail = fullTail();
  change(&tail);
  return messageOf([&] { tools::encodeTail(tail); });
}

static Texts launcherValues() {
  return {app_name,        app_version,         jre_version,  gu_version,       min_splash,
          derPublicKeyHex, can_override_splash, install_type, silent_parameter, update_url};
}

static Texts valuesOf(const tools::FoundTail& found) {
  return {std::begin(found.values), std::end(found.values)};
}

class TailInFile : public testing::Test {
 protected:
  TailInFile() { marker = allocAndInitMarker(); }

  // What the Launcher reads for the executable.
  Texts extract() {
    test::capture([this] { extractTail(executable().c_str()); });
    return launcherValues();
  }

  std::string executable() const { return folder_ / "Demo.app/Contents/MacOS/Demo"; }
  std::string bundle() const { return folder_ / "Demo.app"; }

  test::TempFolder folder_;
};

TEST(EncodeTail, WritesElevenFieldsInTheirOrder) {
  std::string wanted;
  for (const std::string& value : kFullValues) {
    wanted += test::field(value);
  }
  EXPECT_EQ(wanted, tools::encodeTail(fullTail()));
}

TEST(EncodeTail, LeavesOutWhatIsNotGiven) {
  tools::Tail tail;
  tail.appName = "Demo";
  using test::field;
  EXPECT_EQ(field("Demo") + field("") + field("") + field("") + field("0") + field("") +
                field("0") + field("perm_user") + field("") + field("") + field(""),
            tools::encodeTail(tail));
}

TEST(EncodeTail, RefusesANameThatCannotNameFolders) {
  const std::string why =
      "\" cannot name its folders; it must not be empty or contain a '/' or a '-'";
  for (const char* name : {"", "a/b", "a-b", "../x"}) {
    EXPECT_EQ("the application's name \"" + std::string(name) + why,
              refusal([&](tools::Tail* tail) { tail->appName = name; }));
  }
}

TEST(EncodeTail, RefusesARequiredJavaThatIsNoWholeNumber) {
  EXPECT_EQ(
      "the required Java version is \"1.8\"; Java versions are compared as whole numbers; write 8 "
      "for Java 1.8",
      refusal([](tools::Tail* tail) { tail->requiredJavaVersion = "1.8"; }));
}

TEST(EncodeTail, RefusesTheNameOfAnotherComponent) {
  EXPECT_EQ(
      "the application's name \"Quorvane\" is that of another component; choose a different one",
      refusal([](tools::Tail* tail) { tail->appName = "Quorvane"; }));
  EXPECT_NE("no error", refusal([](tools::Tail* tail) { tail->appName = "Mac64JRE"; }));
  EXPECT_NE("no error", refusal([](tools::Tail* tail) { tail->appName = "quorvanE"; }));
}

TEST(EncodeTail, RefusesAVersionThatIsNoWholeNumber) {
  const std::string why =
      "\"; versions are compared as whole numbers, so use up to 18 digits, or leave it empty if it "
      "is not carried";
  EXPECT_EQ("the application's version is \"1.2" + why,
            refusal([](tools::Tail* tail) { tail->appVersion = "1.2"; }));
  EXPECT_EQ("the runtime's version is \"-1" + why,
            refusal([](tools::Tail* tail) { tail->jreVersion = "-1"; }));
  EXPECT_EQ("the GenericUpdater's version is \"1234567890123456789" + why,
            refusal([](tools::Tail* tail) { tail->guVersion = "1234567890123456789"; }));
}

TEST(EncodeTail, RefusesAKeyThatIsNoHexadecimalText) {
  const std::string why =
      "the public key is not hexadecimal text; give what 'quorvane-pack key show' prints";
  EXPECT_EQ(why, refusal([](tools::Tail* tail) { tail->publicKeyHex = "308"; }));
  EXPECT_EQ(why, refusal([](tools::Tail* tail) { tail->publicKeyHex = "30 8"; }));
}

TEST(EncodeTail, RefusesAnUnknownInstallType) {
  EXPECT_EQ("the install type is \"perm-user\"; known are perm_all, perm_user and temporary",
            refusal([](tools::Tail* tail) { tail->installType = "perm-user"; }));
}

TEST(EncodeTail, RefusesANegativeSplashTime) {
  EXPECT_EQ("the splash time is -1 ms, which must not be negative",
            refusal([](tools::Tail* tail) { tail->minSplashMs = -1; }));
}

TEST(EncodeTail, TakesTheLongestFieldsThatAreReadWhole) {
  EXPECT_EQ("no error", refusal([](tools::Tail* tail) {
              tail->appName = std::string(1022, 'n');
              tail->publicKeyHex = std::string(8190, 'a');
              tail->updateUrl = std::string(4998, 'u');
            }));
}

TEST(EncodeTail, RefusesFieldsThatWouldBeReadOutOfStep) {
  EXPECT_EQ("App Name is 1023 bytes long, at most 1022 are read; shorten it",
            refusal([](tools::Tail* tail) { tail->appName = std::string(1023, 'n'); }));
  EXPECT_EQ("Signature Public Key is 8192 bytes long, at most 8190 are read; shorten it",
            refusal([](tools::Tail* tail) { tail->publicKeyHex = std::string(8192, 'a'); }));
  EXPECT_EQ("Update URL is 4999 bytes long, at most 4998 are read; shorten it",
            refusal([](tools::Tail* tail) { tail->updateUrl = std::string(4999, 'u'); }));
  EXPECT_EQ("Silent Parameter contains a zero byte, which ends a field; remove it",
            refusal([](tools::Tail* tail) { tail->silentParameter = std::string("a\0b", 3); }));
}

TEST_F(TailInFile, InTheResourcesIsReadBackFieldByFieldByTheLauncher) {
  test::writeFile(executable(), "machine code");
  tools::writeTailFile(tools::tailPathInBundle(bundle()), fullTail());
  EXPECT_EQ(Texts(kFullValues.begin(), kFullValues.begin() + 10), extract());
}

TEST_F(TailInFile, BehindTheExecutableIsReadBackFieldByFieldByTheLauncher) {
  test::writeFile(executable(), "machine code", 0755);
  tools::appendTail(executable(), fullTail());
  EXPECT_EQ(Texts(kFullValues.begin(), kFullValues.begin() + 10), extract());
  EXPECT_EQ(0755u, test::modeOf(executable()));
}

TEST_F(TailInFile, BehindTheExecutableIsReadBackWithItsEleventhField) {
  test::writeFile(executable(), "machine code", 0755);
  tools::appendTail(executable(), fullTail());
  FILE* stream = fopen(executable().c_str(), "rb");
  ASSERT_EQ(12 + TAIL_MARKER_SIZE, scanToMarker(stream, marker, TAIL_MARKER_SIZE, "Tail"));
  readCommonTailFields(stream);
  const Block<char> version(readString(stream, "Required Java Version", TAIL_FIELD_LIMIT));
  const Block<char> url(readString(stream, "Update URL", TAIL_UPDATE_URL_LIMIT));
  EXPECT_STREQ("17", version.get());
  EXPECT_STREQ("http://127.0.0.1/updates/", url.get());
  EXPECT_EQ(EOF, fgetc(stream));
  fclose(stream);
}

TEST_F(TailInFile, BehindAnExecutableThatEndsLikeTheMarkerBeginsIsFoundAllTheSame) {
  for (int length = 1; length < 4; ++length) {
    test::writeFile(executable(), "code" + std::string(marker, static_cast<size_t>(length)));
    tools::appendTail(executable(), fullTail());
    EXPECT_EQ("Demo", extract().front()) << length;
  }
}

TEST_F(TailInFile, BehindAnExecutableIsTheFormatsExample) {
  tools::Tail tail;
  tail.appName = "Hello";
  tail.appVersion = "3";
  tail.jreVersion = "1407";
  tail.minSplashMs = 500;
  tail.silentParameter = "-q";
  tail.requiredJavaVersion = "17";
  tail.updateUrl = "D";
  test::writeFile(executable(), "");
  tools::appendTail(executable(), tail);
  EXPECT_EQ(test::formatBlock("hex", "tail-record"), test::hexDump(test::readFile(executable())));
}

TEST_F(TailInFile, IsNotPutBehindAnExecutableThatCarriesOne) {
  test::writeFile(executable(), "machine code");
  tools::appendTail(executable(), fullTail());
  const std::string before = test::readFile(executable());
  EXPECT_EQ(
      executable() + " already has a record, at byte 140; use a copy of the executable without one",
      messageOf([this] { tools::appendTail(executable(), fullTail()); }));
  EXPECT_EQ(before, test::readFile(executable()));
}

TEST_F(TailInFile, IsReplacedAsAWhole) {
  const std::string path = folder_ / "Tail";
  test::writeFile(path, std::string(5000, 'x'));
  tools::writeTailFile(path, fullTail());
  EXPECT_EQ(tools::encodeTail(fullTail()), test::readFile(path));
  EXPECT_EQ((Texts{"Tail"}), test::namesIn(folder_.path()));
}

TEST_F(TailInFile, ThatIsRefusedLeavesTheFileAsItWas) {
  const std::string path = folder_ / "Tail";
  test::writeFile(path, "older");
  EXPECT_NE("no error", messageOf([&] { tools::writeTailFile(path, tools::Tail()); }));
  EXPECT_EQ("older", test::readFile(path));
}

TEST_F(TailInFile, GoesIntoAFolderOnlyWhenThatIsABundle) {
  EXPECT_EQ(
      folder_.path() + " is not an app bundle: it has no folder Contents; name a bundle or a file",
      messageOf([this] { tools::tailPathInBundle(folder_.path()); }));
}

TEST_F(TailInFile, IsFoundWithEveryValueInAFileOfItsOwn) {
  const std::string path = folder_ / "Tail";
  tools::writeTailFile(path, fullTail());
  const tools::FoundTail found = tools::findTail(path);
  EXPECT_EQ(kFullValues, valuesOf(found));
  EXPECT_FALSE(found.isAppended);
  EXPECT_EQ(0, found.bytesBehind);
}

TEST_F(TailInFile, IsFoundWithItsPlaceAndTheArchivesBehindAnExecutable) {
  test::writeFile(executable(), "machine code");
  tools::appendTail(executable(), fullTail());
  test::writeFile(executable(), test::readFile(executable()) + "archives");
  const tools::FoundTail found = tools::findTail(executable());
  EXPECT_EQ(kFullValues, valuesOf(found));
  EXPECT_TRUE(found.isAppended);
  EXPECT_EQ(12 + TAIL_MARKER_SIZE, found.offset);
  EXPECT_EQ(8, found.bytesBehind);
}

TEST_F(TailInFile, OfTenFieldsIsFoundWithoutTheEleventh) {
  std::string record;
  for (int i = 0; i < 10; ++i) {
    record += test::field(kFullValues[static_cast<size_t>(i)]);
  }
  test::writeFile(folder_ / "Tail", record);
  const tools::FoundTail found = tools::findTail(folder_ / "Tail");
  EXPECT_EQ("17", found.values[9]);
  EXPECT_EQ("", found.values[10]);
}

TEST_F(TailInFile, ThatIsCutShortIsReportedWithTheValue) {
  const std::string path = folder_ / "Tail";
  test::writeFile(path, test::field("Demo") + "12");
  EXPECT_EQ(
      path +
          " is damaged at byte 5: it ends inside app-version; it is truncated or not a Tail record",
      messageOf([&] { tools::findTail(path); }));
}

TEST_F(TailInFile, WithAValueThatIsReadOutOfStepIsReported) {
  const std::string path = folder_ / "Tail";
  test::writeFile(path, test::field("Demo") + test::field(std::string(1023, '1')));
  EXPECT_EQ(
      path +
          " is damaged at byte 5: app-version is longer than the 1022 bytes that are read of it; "
          "it is truncated or not a Tail record",
      messageOf([&] { tools::findTail(path); }));
}

TEST_F(TailInFile, ThatIsMissingIsReported) {
  const std::string path = folder_ / "none";
  EXPECT_EQ(path + " cannot be read: No such file or directory",
            messageOf([&] { tools::findTail(path); }));
}
