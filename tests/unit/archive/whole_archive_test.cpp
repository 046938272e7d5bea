#include <gtest/gtest.h>

#include <filesystem>

#include "archive/archive.h"
#include "support/failure/failure.h"
#include "tests/support/own_root.h"
#include "tests/support/unavailable.h"
#include "tests/unit/archive/archive_fixture.h"
#include "tests/unit/archive/signed_archive.h"

using test::ArchiveTest;
using test::field;
using test::fileRecord;
using Lines = std::vector<std::string>;

class WholeArchive : public ArchiveTest {};

TEST_F(WholeArchive, WithoutASignatureRecordIsExtractedFullyAndAccepted) {
  const Lines lines = extract(fileRecord("a", "1") + fileRecord("b", "2"));
  EXPECT_EQ((Lines{"a", "b"}), test::namesIn(dest()));
  EXPECT_FALSE(test::exists(archivePath()));
  EXPECT_EQ("[ExtractArchive] Extracting archive " + archivePath() + " into " + dest(),
            lines.front());
  EXPECT_EQ("[ExtractArchive] Done extracting archive.", lines.back());
}

TEST_F(WholeArchive, WhoseFirstTypeIsEmptyExtractsNothingAndIsDeleted) {
  extract(field("") + fileRecord("a", "1"));
  EXPECT_TRUE(test::namesIn(dest()).empty());
  EXPECT_FALSE(test::exists(archivePath()));
}

TEST_F(WholeArchive, ThatIsMissingEndsTheProcess) {
  const test::Result result = test::runInChild(
      [&] { extractArchive(nullptr, beside("missing.p2").c_str(), dest().c_str(), nullptr); });
  EXPECT_EQ(1, result.status);
  EXPECT_EQ(
      "[ExtractArchive] Failed to extract archive - couldn't open file " + beside("missing.p2"),
      test::logLinesOf(result.out).back());
}

TEST_F(WholeArchive, WithoutASignatureRecordIsTreatedAsWronglySignedWhenASignatureIsRequired) {
  isRequired_ = true;
  const Lines lines = extract(fileRecord("a", "1"));
  const std::string rule(71, '*');
  const Lines wanted = {"[ExtractArchive] Extracting archive " + archivePath() + " into " + dest(),
                        rule,
                        "[ExtractArchive] ERROR - unable to verify signature of hash of archive.",
                        "[ExtractArchive] Quorvane will disregard this update.", rule};
  EXPECT_TRUE(test::containsInOrder(lines, wanted));
  EXPECT_FALSE(test::exists(dest()));
  EXPECT_FALSE(test::exists(archivePath()));
}

TEST_F(WholeArchive, ThatIsRejectedTakesShortDotNamesAndDeepFoldersWithIt) {
  key_ = test::publicKey();
  std::string deep = "d";
  for (int i = 0; i < 400; ++i) {
    deep += "/d";
  }
  const std::string entries =
      fileRecord(".a", "1") + fileRecord("x/.b", "2") + fileRecord(deep, "3");
  const Lines lines = extract(test::signedArchive(entries, "second"));
  EXPECT_TRUE(
      test::containsInOrder(lines, {"[ExtractArchiveFile] Extracting .a (::0)",
                                    "[ExtractArchive] Quorvane will disregard this update."}));
  EXPECT_FALSE(test::exists(dest()));
}

TEST(Trust, InAKeyAloneRequiresNoSignature) {
  const Trust trust = test::publicKey();
  EXPECT_EQ(test::publicKey(), trust.key);
  EXPECT_FALSE(trust.isRequired);
}

TEST_F(WholeArchive, IsTrustedAsItsOwnExtractionSaysWhateverOneBeforeItSaid) {
  isRequired_ = true;
  extract(fileRecord("a", "1"));
  EXPECT_FALSE(test::exists(dest()));
  isRequired_ = false;
  std::filesystem::create_directory(dest());
  extract(fileRecord("a", "1"));
  EXPECT_EQ("1", test::readFile(inDest("a")));
}

TEST_F(WholeArchive, ThatIsRejectedButCannotBeRemovedFromAFullDiskIsAFailureOfTheDisk) {
  if (!test::mayMount()) {
    return test::unavailable("this account may not mount anything");
  }
  constexpr int kFullDisk = 7;
  test::writeFile(archivePath(), fileRecord("a", "x"));
  const test::Result result = test::runInChild([&] {
    test::mountSmallDisk(dest(), "32k");  // nobody removes where a disk is mounted
    setEndOfFailures([](int status, Failure failure) {
      return failure == Failure::DiskFull ? kFullDisk : status;
    });
    extractArchive(nullptr, archivePath().c_str(), dest().c_str(), {nullptr, true});
  });
  EXPECT_EQ(kFullDisk, result.status) << result.out;
}
