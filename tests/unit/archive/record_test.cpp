#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>

#include "archive/archive.h"
#include "support/owned.h"
#include "tests/unit/archive/archive_fixture.h"

using test::ArchiveTest;
using test::field;
using test::fileRecord;
using test::folderRecord;
using Lines = std::vector<std::string>;

class Record : public ArchiveTest {};

TEST_F(Record, FolderIsCreatedOpenToAll) {
  const test::RecordResult result = readRecord(folderRecord("lib"));
  EXPECT_EQ(0, result.value);
  EXPECT_EQ(0777u, test::modeOf(inDest("lib")));
  const Lines wanted = {"[ExtractArchiveFile] Extracting lib (::1)",
                        "[ChMod] Executing chmod 777 \"" + inDest("lib") + "\"",
                        "\t[ExtractArchiveFile] Created folder " + inDest("lib")};
  EXPECT_EQ(wanted, result.lines);
}

TEST_F(Record, FolderHasNoLengthFieldAndTheNextRecordFollowsItsPath) {
  extract(folderRecord("lib") + fileRecord("lib/a", "A"));
  EXPECT_EQ("A", test::readFile(inDest("lib/a")));
}

TEST_F(Record, PlainFileIsWrittenWithItsIntermediateFolders) {
  const test::RecordResult result = readRecord(fileRecord("a/b/c.txt", "hello"));
  EXPECT_EQ(0, result.value);
  EXPECT_EQ("hello", test::readFile(inDest("a/b/c.txt")));
  EXPECT_EQ(0755u, test::modeOf(inDest("a/b/c.txt")));
  const Lines wanted = {"[ExtractArchiveFile] Extracting a/b/c.txt (::0)",
                        "[ChMod] Executing chmod 777 \"" + inDest("a") + "\"",
                        "[ChMod] Executing chmod 777 \"" + inDest("a/b") + "\"",
                        "\t[ExtractArchiveFile] Extracting to " + inDest("a/b/c.txt"),
                        "[ChMod] Executing chmod -R 755 \"" + inDest("a/b/c.txt") + "\""};
  EXPECT_EQ(wanted, result.lines);
}

TEST_F(Record, PlainFileGetsItsModeWhateverTheMask) {
  const mode_t mask = umask(0077);
  readRecord(fileRecord("a", "hello"));
  umask(mask);
  EXPECT_EQ(0755u, test::modeOf(inDest("a")));
}

TEST_F(Record, ExistingFolderIsUsedAsItIs) {
  readRecord(folderRecord("a"));
  const test::RecordResult result = readRecord(folderRecord("a"));
  const Lines wanted = {"[ExtractArchiveFile] Extracting a (::1)",
                        "\t[ExtractArchiveFile] Created folder " + inDest("a")};
  EXPECT_EQ(wanted, result.lines);
}

TEST_F(Record, AnyOtherTypeIsAPlainFile) {
  for (const char* type : {"0", "3", "-1", "x", " "}) {
    readRecord(fileRecord("f", type, type));
    EXPECT_EQ(type, test::readFile(inDest("f")));
  }
}

TEST_F(Record, EmptyPlainFileIsCreated) {
  readRecord(fileRecord("empty", ""));
  EXPECT_EQ("", test::readFile(inDest("empty")));
}

TEST_F(Record, LaterEntryOfTheSamePathReplacesTheEarlier) {
  extract(fileRecord("f", "first, longer") + fileRecord("f", "second"));
  EXPECT_EQ("second", test::readFile(inDest("f")));
}

TEST_F(Record, EmptyPathOfAFolderIsTheDestinationItself) {
  EXPECT_EQ(0, readRecord(folderRecord("")).value);
  EXPECT_TRUE(test::namesIn(dest()).empty());
}

TEST_F(Record, EmptyPathOfAFolderCreatesAMissingDestinationForWhatFollows) {
  std::filesystem::remove(dest());
  extract(folderRecord("") + fileRecord("f", "x"));
  EXPECT_EQ("x", test::readFile(inDest("f")));
}

TEST_F(Record, EmptyTypeFieldEndsTheArchive) {
  EXPECT_EQ(-1, readRecord(field("") + fileRecord("f", "x")).value);
  EXPECT_TRUE(test::namesIn(dest()).empty());
}

TEST_F(Record, EndOfFileEndsTheArchive) {
  const test::RecordResult result = readRecord("");
  EXPECT_EQ(-1, result.value);
  EXPECT_EQ(-1, result.signedLength);
  EXPECT_TRUE(result.lines.empty());
}

TEST_F(Record, SignatureRecordIsTakenWithoutItsDataAndEndsTheArchive) {
  const test::RecordResult result = readRecord(test::signatureRecord("1234", "c0ffee"));
  EXPECT_EQ(-1, result.value);
  EXPECT_EQ(1234, result.signedLength);
  EXPECT_EQ("c0ffee", result.signatureHex);
  EXPECT_TRUE(test::namesIn(dest()).empty());
  const Lines wanted = {"[ExtractArchiveFile] Extracting qvArcSpBlock_DigitalSignature1 (::0)",
                        "[ExtractArchiveFile] Found special block qvArcSpBlock_DigitalSignature1",
                        "[ExtractArchiveFile] Found signature block DigitalSignature1"};
  EXPECT_EQ(wanted, result.lines);
}

TEST_F(Record, SignatureRecordOfTypeTwoIsOneToo) {
  const std::string record = "2" + test::signatureRecord("7", "ab").substr(1);
  EXPECT_EQ(7, readRecord(record).signedLength);
}

TEST_F(Record, FolderNamedLikeTheSignatureRecordIsAFolder) {
  const test::RecordResult result = readRecord(folderRecord("qvArcSpBlock_DigitalSignature1"));
  EXPECT_EQ(0, result.value);
  EXPECT_EQ(-1, result.signedLength);
  EXPECT_TRUE(test::exists(inDest("qvArcSpBlock_DigitalSignature1")));
}

TEST_F(Record, SpecialBlockOfAnyOtherNameIsLoggedAndWrittenLikeAPlainFile) {
  for (const char* name : {"qvArcSpBlock_", "qvArcSpBlock_X", "qvArcSpBlock_DigitalSignature12"}) {
    const test::RecordResult result = readRecord(fileRecord(name, "data"));
    EXPECT_EQ(0, result.value);
    EXPECT_EQ("data", test::readFile(inDest(name)));
    EXPECT_TRUE(test::containsInOrder(
        result.lines, {std::string("[ExtractArchiveFile] Found special block ") + name,
                       "\t[ExtractArchiveFile] Extracting to " + inDest(name)}));
  }
}

TEST_F(Record, NameThatOnlyContainsTheSpecialPrefixIsNone) {
  const test::RecordResult result = readRecord(fileRecord("x/qvArcSpBlock_DigitalSignature1", "d"));
  EXPECT_EQ(0, result.value);
  EXPECT_EQ("d", test::readFile(inDest("x/qvArcSpBlock_DigitalSignature1")));
}

TEST_F(Record, NothingIsReadOnceASignatureHasBeenSeen) {
  test::writeFile(archivePath(), fileRecord("f", "x"));
  const Stream stream(fopen(archivePath().c_str(), "rb"));
  long signedLength = 0;
  EXPECT_EQ(-1, extractArchiveFileCheckSignature(nullptr, nullptr, dest().c_str(), stream.get(),
                                                 &signedLength, nullptr, nullptr));
  EXPECT_EQ(0, ftell(stream.get()));
}

TEST_F(Record, IgnoringVariantDropsTheSignatureText) {
  test::writeFile(archivePath(), test::signatureRecord("5", "ab") + fileRecord("f", "x"));
  const Stream stream(fopen(archivePath().c_str(), "rb"));
  test::logLinesOf([&] {
    EXPECT_EQ(-1, extractArchiveFileIgnoreSignature(nullptr, nullptr, dest().c_str(), stream.get(),
                                                    nullptr));
    EXPECT_EQ(0, extractArchiveFileIgnoreSignature(nullptr, nullptr, dest().c_str(), stream.get(),
                                                   nullptr));
  });
  EXPECT_EQ("x", test::readFile(inDest("f")));
}

TEST_F(Record, DataLongerThanAnyBufferIsCopiedExactly) {
  std::string data(1000003, '\0');
  for (size_t i = 0; i < data.size(); ++i) {
    data[i] = static_cast<char>(i * 7 + (i >> 8));
  }
  extract(fileRecord("big", data) + fileRecord("after", "A"));
  EXPECT_TRUE(data == test::readFile(inDest("big")));
  EXPECT_EQ("A", test::readFile(inDest("after")));
}
