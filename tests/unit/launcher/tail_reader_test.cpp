#include "launcher/installation/tail_reader.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "formats/tail_marker.h"
#include "support/files/paths.h"
#include "support/process/exit_status.h"
#include "tests/support/capture.h"
#include "tests/support/files.h"
#include "tests/support/temp_folder.h"

namespace fs = std::filesystem;
using test::field;
using Texts = std::vector<std::string>;

static const Texts kNineFields = {"Demo",     "12", "1407",      "3", "500",
                                  "30820122", "1",  "perm_user", "-q"};

static std::string fields(const Texts& texts) {
  std::string bytes;
  for (const std::string& text : texts) {
    bytes += field(text);
  }
  return bytes;
}

static std::string tailMarker() {
  return {marker, TAIL_MARKER_SIZE};
}

// A bundle whose executable may carry a record, and whose Resources may hold one.
class ExtractTail : public testing::Test {
 protected:
  ExtractTail() {
    marker = allocAndInitMarker();
    test::writeFile(executable(), "machine code");
    fs::create_directories(folder_ / "Contents/Resources");
  }

  std::string executable() const { return folder_ / "Contents/MacOS/Demo"; }
  std::string fallback() const { return folder_ / "Contents/MacOS/../Resources/Tail"; }

  void append(const std::string& bytes) {
    test::writeFile(executable(), "machine code" + tailMarker() + bytes);
  }

  Texts extract() {
    return test::logLinesOf([this] { extractTail(executable().c_str()); });
  }

  // Runs in a child, since the process is expected to end.
  test::Result extractInChild(const std::string& path) {
    return test::runInChild([&] { extractTail(path.c_str()); });
  }

  test::TempFolder folder_;
};

static Texts nineValues() {
  return {app_name,        app_version,         jre_version,  gu_version,      min_splash,
          derPublicKeyHex, can_override_splash, install_type, silent_parameter};
}

TEST_F(ExtractTail, ReadsARecordOfTenFieldsBehindTheExecutable) {
  append(fields(kNineFields) + field("17"));
  EXPECT_EQ((Texts{"[Launcher] Found tail marker", "[Launcher] App Name = Demo",
                   "[Launcher] App Version = 12", "[Launcher] JRE Version = 1407",
                   "[Launcher] GU Version = 3", "[Launcher] Min Splash MS = 500",
                   "[Launcher] Signature Public Key = 30820122",
                   "[Launcher] Can Override Splash = 1", "[Launcher] Install Type = perm_user",
                   "[Launcher] Silent Parameter = -q", "[Launcher] Update URL = 17"}),
            extract());
  EXPECT_EQ(kNineFields, nineValues());
  EXPECT_STREQ("17", update_url);
}

TEST_F(ExtractTail, OfARecordOfElevenFieldsGivesTheSameNineValuesAndTheTenthAsUpdateUrl) {
  append(fields(kNineFields) + field("17") + field("http://example.invalid/") + "archives");
  extract();
  EXPECT_EQ(kNineFields, nineValues());
  EXPECT_STREQ("17", update_url);
}

TEST_F(ExtractTail, WithoutMarkerReadsTheResourcesTailFromItsFirstByte) {
  test::writeFile(fallback(), fields(kNineFields) + field("17"));
  const Texts lines = extract();
  EXPECT_TRUE(test::containsInOrder(
      lines,
      {"Could not find marker: Tail", "[Extractor] The absolute wrapper path is " + executable(),
       "[Extractor] The executable name is " + executable(),
       "[Launcher] The executable dir is " + (folder_ / "Contents/MacOS"),
       "[Launcher] No tail found. Trying " + fallback(), "[Launcher] App Name = Demo"}));
  EXPECT_EQ(kNineFields, nineValues());
}

TEST_F(ExtractTail, DoesNotLookForAMarkerInTheResourcesTail) {
  test::writeFile(fallback(), tailMarker() + fields(kNineFields));
  extract();
  EXPECT_STREQ("\x1D\x43\x2A", std::string(app_name).substr(0, 3).c_str());
}

TEST_F(ExtractTail, PrefersTheRecordBehindTheExecutable) {
  append(fields(kNineFields));
  test::writeFile(fallback(), field("Other"));
  extract();
  EXPECT_STREQ("Demo", app_name);
}

TEST_F(ExtractTail, FieldsMissingAtTheEndReadAsEmpty) {
  append(field("Demo") + field("12") + "14");
  extract();
  EXPECT_EQ((Texts{"Demo", "12", "14", "", "", "", "", "", ""}), nineValues());
  EXPECT_STREQ("", update_url);
}

TEST_F(ExtractTail, OfAnEmptyResourcesTailEveryFieldIsEmpty) {
  test::writeFile(fallback(), "");
  extract();
  EXPECT_EQ(Texts(9, ""), nineValues());
}

TEST_F(ExtractTail, AnOverlongFieldPutsTheFollowingOnesOutOfStep) {
  append(field(std::string(1030, 'n')) + field("12"));
  const Texts lines = extract();
  EXPECT_EQ(std::string(1023, 'n'), app_name);
  EXPECT_EQ(std::string(7, 'n'), app_version);
  EXPECT_STREQ("12", jre_version);
  EXPECT_EQ("***WARNING - STRING TOO LONG FOR ALLOC 1023>1024! (READSTRING) [" +
                std::string(1023, 'n') + "]",
            lines.at(1));
}

TEST_F(ExtractTail, TakesALongUpdateUrlWhole) {
  const std::string url(4998, 'u');
  append(fields(kNineFields) + field(url));
  extract();
  EXPECT_EQ(url, update_url);
}

TEST_F(ExtractTail, OfAnExecutableThatCannotBeOpenedEndsTheProcess) {
  const std::string path = folder_ / "none";
  const test::Result result = extractInChild(path);
  EXPECT_EQ(EXIT_STATUS_FAILURE, result.status);
  EXPECT_EQ((Texts{"Failed to extract wrapper tail - couldn't open file " + path}),
            test::logLinesOf(result.out));
}

TEST_F(ExtractTail, WithoutMarkerAndWithoutResourcesTailEndsTheProcess) {
  const test::Result result = extractInChild(executable());
  EXPECT_EQ(EXIT_STATUS_FAILURE, result.status);
  EXPECT_EQ(
      "[Launcher] ************************* Failed to extract wrapper tail - couldn't open "
      "file " +
          fallback(),
      test::logLinesOf(result.out).back());
}

TEST_F(ExtractTail, OfARelativePathLooksBesideTheWorkingFolder) {
  const test::Result result = test::runInChild([this] {
    fs::current_path(folder_ / "Contents");
    extractTail("MacOS/Demo");
  });
  const Texts lines = test::logLinesOf(result.out);
  EXPECT_TRUE(
      test::containsInOrder(lines, {"[Extractor] The absolute wrapper path is " + executable(),
                                    "[Extractor] The executable name is MacOS/Demo",
                                    "[Launcher] No tail found. Trying " + fallback()}));
}

TEST(ReadCommonTailFields, LeavesTheStreamAtTheTenthField) {
  FILE* stream = tmpfile();
  const std::string bytes = fields(kNineFields) + field("17") + field("D");
  fwrite(bytes.data(), 1, bytes.size(), stream);
  rewind(stream);
  readCommonTailFields(stream);
  EXPECT_EQ(kNineFields, nineValues());
  EXPECT_EQ('1', fgetc(stream));
  fclose(stream);
}
