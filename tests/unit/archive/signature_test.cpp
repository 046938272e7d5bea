#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <functional>

#include "archive/archive.h"
#include "crypto/mixed_hash.h"
#include "crypto/tomcrypt.h"
#include "tests/support/hex_text.h"
#include "tests/unit/archive/archive_fixture.h"
#include "tests/unit/archive/signed_archive.h"
#include "tools/formats/archive_records.h"

namespace fs = std::filesystem;
using test::ArchiveTest;
using test::field;
using test::fileRecord;
using test::signatureOver;
using test::signedArchive;
using Lines = std::vector<std::string>;

static const char kVerified[] = "[ExtractArchive] Archive signature verified.";
static const char kMismatch[] =
    "[ExtractArchive] Archive INVALID.  Archive signature did not match place in file (";

class SignedArchive : public ArchiveTest {
 protected:
  SignedArchive() { key_ = test::publicKey(); }

  static bool has(const Lines& lines, const std::string& line) {
    return std::find(lines.begin(), lines.end(), line) != lines.end();
  }

  void expectRejected(const std::string& bytes) {
    fs::create_directories(dest());
    const Lines lines = extract(bytes);
    const std::string rule(71, '*');
    EXPECT_TRUE(test::containsInOrder(
        lines, {rule, "[ExtractArchive] ERROR - unable to verify signature of hash of archive.",
                "[ExtractArchive] Quorvane will disregard this update.", rule}));
    EXPECT_FALSE(has(lines, kVerified));
    EXPECT_FALSE(test::exists(dest()));
    EXPECT_FALSE(test::exists(archivePath()));
  }

  void expectAccepted(const std::string& bytes) {
    fs::create_directories(dest());
    EXPECT_TRUE(has(extract(bytes), kVerified));
    EXPECT_TRUE(test::exists(dest()));
    EXPECT_FALSE(test::exists(archivePath()));
  }

  const std::string entries_ = fileRecord("f", "content") + test::folderRecord("d");
};

// A signature whose hash cannot be made is a wrong one.
TEST_F(SignedArchive, WhoseHashCannotBeMadeIsRejectedWithALine) {
  const std::string bytes = signedArchive(entries_);
  const auto expectLine = [&](const char* line, const std::function<void()>& breakHash) {
    fs::create_directories(dest());
    test::writeFile(archivePath(), bytes);
    const test::Result result = test::runInChild([&] {
      unregister_hash(&mixedDescriptor);
      breakHash();
      extractArchive(nullptr, archivePath().c_str(), dest().c_str(), key_);
    });
    EXPECT_EQ(test::CODE_RETURNED, result.status);
    EXPECT_NE(std::string::npos, result.out.find(std::string("[ExtractArchive] ERROR - ") + line))
        << result.out;
    EXPECT_NE(std::string::npos, result.out.find("unable to verify signature of hash of archive"));
    EXPECT_EQ(std::string::npos, result.out.find(kVerified));
    EXPECT_FALSE(test::exists(dest()));
  };
  expectLine("unable to start hash of archive.", [] {
    ltc_hash_descriptor filler = sha256_desc;
    do {
      ++filler.ID;
    } while (register_hash(&filler) != -1);
  });
  expectLine("unable to hash archive.", [] {
    ltc_hash_descriptor failing = mixedDescriptor;
    failing.process = [](Hash_state*, const unsigned char*, unsigned long) {
      return static_cast<int>(CRYPT_ERROR);
    };
    register_hash(&failing);
  });
  expectLine("unable to finish hash of archive.", [] {
    ltc_hash_descriptor failing = mixedDescriptor;
    failing.done = [](Hash_state*, unsigned char*) { return static_cast<int>(CRYPT_ERROR); };
    register_hash(&failing);
  });
}

TEST_F(SignedArchive, IsVerifiedInTheseStepsAndThenDeleted) {
  const std::string bytes = signedArchive(entries_);
  unsigned char sha256[32];
  hash_state state;
  sha256_init(&state);
  sha256_process(&state, reinterpret_cast<const unsigned char*>(entries_.data()), entries_.size());
  sha256_done(&state, sha256);
  const Lines lines = extract(bytes);
  const Lines wanted = {"[ExtractArchive] Extracting archive " + archivePath() + " into " + dest(),
                        "[ExtractArchiveFile] Extracting f (::0)",
                        "\t[ExtractArchiveFile] Extracting to " + inDest("f"),
                        "[ChMod] Executing chmod -R 755 \"" + inDest("f") + "\"",
                        "[ExtractArchiveFile] Extracting d (::1)",
                        "[ChMod] Executing chmod 777 \"" + inDest("d") + "\"",
                        "\t[ExtractArchiveFile] Created folder " + inDest("d"),
                        "[ExtractArchiveFile] Extracting qvArcSpBlock_DigitalSignature1 (::0)",
                        "[ExtractArchiveFile] Found special block qvArcSpBlock_DigitalSignature1",
                        "[ExtractArchiveFile] Found signature block DigitalSignature1",
                        "[ExtractArchive] Done extracting archive.",
                        "[ExtractArchive] Pre-Alloc",
                        "[ExtractArchive] Post-Alloc",
                        "[ExtractArchive] Produced a signature of length 256",
                        "[ExtractArchive] Starting hash...",
                        "[ExtractArchive] Seeking to start of data...",
                        "[ExtractArhive] At start of file.",
                        "[ExtractArchive] Completed hash",
                        "[ExtractArchive] Produced hash: " + test::hexOf(sha256, sizeof sha256),
                        "Doing PSS decode",
                        kVerified};
  EXPECT_EQ(wanted, lines);
  EXPECT_EQ("content", test::readFile(inDest("f")));
  EXPECT_FALSE(test::exists(archivePath()));
}

TEST_F(SignedArchive, LongerThanAHashChunkIsVerified) {
  for (const size_t size : {49000, 50000, 99990, 100001, 1000000}) {
    expectAccepted(signedArchive(fileRecord("f", std::string(size, 'x'))));
  }
}

TEST_F(SignedArchive, WithoutEntriesIsVerified) {
  expectAccepted(signedArchive(""));
}

TEST_F(SignedArchive, WithAnyByteBeforeTheRecordChangedIsRejectedWithItsDestination) {
  std::string bytes = signedArchive(entries_);
  bytes[entries_.find("content")] ^= 1;
  expectRejected(bytes);
}

TEST_F(SignedArchive, OfAnotherKeyIsRejected) {
  expectRejected(signedArchive(entries_, "second"));
}

TEST_F(SignedArchive, WithASignatureOverOtherBytesIsRejected) {
  expectRejected(entries_ + tools::signatureRecord(static_cast<long>(entries_.size()),
                                                   signatureOver(entries_ + "x")));
}

TEST_F(SignedArchive, WithoutAKeyAbortsAfterItsEntriesHaveBeenExtracted) {
  key_ = nullptr;
  const test::Result result = extractInChild(signedArchive(entries_));
  EXPECT_EQ(SIGABRT, result.signal);
  EXPECT_NE(std::string::npos, result.err.find("LTC_ARGCHK 'key != NULL' failure on line"));
  EXPECT_EQ("content", test::readFile(inDest("f")));
}

TEST_F(SignedArchive, WithBytesBehindItsRecordIsVerifiedAndTheyAreNotRead) {
  expectAccepted(signedArchive(entries_) + fileRecord("more", "x"));
  EXPECT_FALSE(test::exists(inDest("more")));
}

TEST_F(SignedArchive, WithAnotherTypeAndLengthInItsRecordIsVerified) {
  const std::string record = test::recordHead("3", "qvArcSpBlock_DigitalSignature1", "-17") +
                             field(std::to_string(entries_.size())) +
                             field(signatureOver(entries_));
  expectAccepted(entries_ + record);
}

class RequiredSignature : public SignedArchive {
 protected:
  RequiredSignature() { isRequired_ = true; }

  void expectNothingExtracted(const std::string& bytes) {
    fs::create_directories(dest());
    for (const std::string& line : extract(bytes)) {
      EXPECT_EQ(std::string::npos, line.find("[ExtractArchiveFile]")) << line;
    }
    EXPECT_FALSE(test::exists(dest()));
    EXPECT_FALSE(test::exists(archivePath()));
  }

  // Makes the tool that runs `command` during the extraction, and returns the records of an archive
  // that needs it and is longer than what is read ahead.
  std::string recordsThatRun(const std::string& command) {
    unpack200_ = makeTool("unpack200", std::string(test::WORKING_TOOL) + "; " + command);
    return fileRecord("a.jar", "a", "2") + fileRecord("padding", std::string(300000, 'p')) +
           fileRecord("last", "l");
  }
};

TEST_F(RequiredSignature, IsVerifiedOnceAndBeforeAnythingIsExtracted) {
  unpack200_ = inDest("unpack200");
  const std::string tool = "#!/bin/sh\ncp \"$1\" \"$2\"\n";
  const Lines lines =
      extract(signedArchive(fileRecord("unpack200", tool) + fileRecord("a", "A", "2")));
  EXPECT_TRUE(test::containsInOrder(
      lines,
      {"[ExtractArchive] Extracting archive " + archivePath() + " into " + dest(),
       "[ExtractArchive] Pre-Alloc", "[ExtractArchive] Starting hash...",
       "[ExtractArchive] Completed hash", kVerified,
       "[ExtractArchiveFile] Extracting unpack200 (::0)", "[ExtractArchiveFile] Extracting a (::2)",
       "[ExtractArchiveFile] Found signature block DigitalSignature1",
       "[ExtractArchive] Done extracting archive."}));
  EXPECT_EQ(1, std::count(lines.begin(), lines.end(), "[ExtractArchive] Starting hash..."));
  EXPECT_EQ("A", test::readFile(inDest("a")));
}

TEST_F(RequiredSignature, ThatIsWrongOrMissingLeavesNothingExtracted) {
  expectNothingExtracted(signedArchive(entries_, "second"));
  expectNothingExtracted(entries_);
  expectNothingExtracted(entries_.substr(0, entries_.size() - 1));
  expectNothingExtracted(fileRecord("../f", "x"));
  expectNothingExtracted("");
  std::string changed = signedArchive(entries_);
  changed[changed.find("content")] ^= 1;
  expectNothingExtracted(changed);
}

TEST_F(RequiredSignature, WithoutAKeyAbortsBeforeAnythingIsExtracted) {
  key_ = nullptr;
  const test::Result result = extractInChild(signedArchive(entries_));
  EXPECT_EQ(SIGABRT, result.signal);
  EXPECT_EQ(Lines{}, test::namesIn(dest()));
}

TEST_F(RequiredSignature, OfAnArchiveWhoseNameAnotherTakesMeanwhileStandsForWhatIsExtracted) {
  test::writeFile(beside("evil"), fileRecord("evil", "x"));
  const std::string records = recordsThatRun("mv '" + beside("evil") + "' '" + archivePath() + "'");
  expectAccepted(signedArchive(records));
  EXPECT_EQ((Lines{"a.jar", "last", "padding"}), test::namesIn(dest()));
  EXPECT_EQ("l", test::readFile(inDest("last")));
  EXPECT_FALSE(test::exists(beside("evil")));
}

TEST_F(RequiredSignature, OfAnArchiveThatHoldsAnEntryOfItsOwnPathStandsForWhatIsExtracted) {
  const std::string evil = fileRecord("evil", "x");
  const std::string records = fileRecord("archive.p2", evil) + fileRecord("f", "content");
  const std::string archive = inDest("archive.p2");
  test::writeFile(archive, signedArchive(records));
  const Lines lines = test::logLinesOf([&] {
    extractArchive(nullptr, archive.c_str(), dest().c_str(), {key_, true});
  });
  EXPECT_TRUE(has(lines, kVerified));
  EXPECT_EQ(Lines{"f"}, test::namesIn(dest()));
  EXPECT_EQ("content", test::readFile(inDest("f")));
}

TEST_F(RequiredSignature, OfAnArchiveThatIsCutWhileItIsExtractedIsRejected) {
  const std::string head =
      fileRecord("a.jar", "a", "2") + fileRecord("padding", std::string(300000, 'p'));
  const std::string records =
      recordsThatRun("truncate -s " + std::to_string(head.size()) + " '" + archivePath() + "'");
  extract(signedArchive(records));
  EXPECT_FALSE(test::exists(dest()));
}

// Another packager may write the record otherwise: what counts is what it says.
TEST_F(SignedArchive, WithARecordSpelledOtherwiseIsVerifiedWhenASignatureIsRequired) {
  isRequired_ = true;
  const std::string size = std::to_string(entries_.size());
  const std::string hex = signatureOver(entries_);
  std::string upperCase = hex;
  for (char& digit : upperCase) {
    digit = static_cast<char>(toupper(digit));
  }
  ASSERT_NE(hex, upperCase);
  const char path[] = "qvArcSpBlock_DigitalSignature1";
  for (const char* type : {"0", "2", "3", "-1", "00", "x"}) {
    expectAccepted(entries_ + test::recordHead(type, path, "517") + field(size) + field(hex));
    EXPECT_EQ((Lines{"d", "f"}), test::namesIn(dest()));
    EXPECT_EQ("content", test::readFile(inDest("f")));
  }
  for (const char* length : {"0", "0517", "-17", "", "x"}) {
    expectAccepted(entries_ + test::recordHead("0", path, length) + field(size) + field(hex));
  }
  expectAccepted(entries_ + test::recordHead("0", path, "517") + field("0" + size) + field(hex));
  expectAccepted(entries_ + test::recordHead("0", path, "517") + field(size) + field(upperCase));
}

TEST_F(SignedArchive, WithARecordThatSaysAnythingElseIsRejectedWhenASignatureIsRequired) {
  isRequired_ = true;
  const std::string length = std::to_string(entries_.size());
  const std::string hex = signatureOver(entries_);
  expectRejected(entries_ + test::signatureRecord(length, signatureOver(entries_, "second")));
  expectRejected(entries_ + test::signatureRecord(length, signatureOver(entries_ + "x")));
  expectRejected(entries_ + fileRecord("evil", "x") + test::signatureRecord(length, hex));
  expectRejected(entries_ + test::signatureRecord("0", signatureOver("")));
  expectRejected(entries_ + test::signatureRecord(length, hex).substr(0, 40));
}

// What follows was not signed; nothing between the signed bytes and the record may be
// accepted with them.
TEST_F(SignedArchive, WithAnEntrySlippedInBeforeItsRecordIsRejected) {
  const std::string whole = signedArchive(entries_);
  const std::string record = whole.substr(entries_.size());
  expectRejected(entries_ + fileRecord("evil", "x") + record);
}

TEST_F(SignedArchive, WhoseSlippedInEntryLooksLikeTheRecordAtItsPlaceIsRejected) {
  const std::string length = std::to_string(entries_.size());
  const std::string hex = signatureOver(entries_);
  // Read as entries: two folders, then a file whose type is the signature. Read as the record: all
  // of its fields are as they should be.
  const std::string twoFaced = test::folderRecord("qvArcSpBlock_DigitalSignature1") + field("1") +
                               field(length) + fileRecord("evil", "x", hex);
  const std::string bytes =
      entries_ + twoFaced + tools::signatureRecord(static_cast<long>(entries_.size()), hex);
  fs::create_directories(dest());
  const Lines lines = extract(bytes);
  for (const std::string& line : lines) {
    EXPECT_EQ(std::string::npos, line.find("INVALID")) << line;
  }
  EXPECT_TRUE(has(
      lines, "[ExtractArchiveFile] Extracting evil (::" + std::to_string(atol(hex.c_str())) + ")"));
  EXPECT_FALSE(has(lines, kVerified));
  EXPECT_FALSE(test::exists(dest()));
}

TEST_F(SignedArchive, ThatHoldsAGenuineArchiveUnderItsOwnNameIsNotJudgedByThat) {
  fs::remove(dest());
  const std::string genuine = signedArchive(entries_);
  const long length = static_cast<long>(entries_.size());
  std::string evil = fileRecord("archive.p2", genuine);
  evil += fileRecord("evil", "x");
  evil += tools::signatureRecord(length, signatureOver(entries_));
  const std::string folder = beside("together");
  test::writeFile(folder + "/archive.p2", evil);
  const Lines lines = test::logLinesOf(
      [&] { extractArchive(nullptr, (folder + "/archive.p2").c_str(), folder.c_str(), key_); });
  EXPECT_FALSE(has(lines, kVerified));
  EXPECT_FALSE(test::exists(folder));
}

// As above, where the genuine one is unpacked to the archive's own path and is just as long.
TEST_F(SignedArchive, ThatIsReplacedByAGenuineOneWhileItIsReadIsRejected) {
  const std::string genuineEntries = fileRecord("f", std::string(2000, 'x'));
  const std::string genuine = signedArchive(genuineEntries);
  test::writeFile(beside("genuine"), genuine);
  unpack200_ = makeTool("unpack200", "cp '" + beside("genuine") + "' \"$out\"");
  std::string evil = fileRecord("together/archive.p2", "x", "2");
  evil += fileRecord("together/evil", "");
  // "0", "p" and the length of four digits, each with its zero byte, stand before the padding.
  evil += fileRecord("p", std::string(genuineEntries.size() - evil.size() - 9, 'p'));
  ASSERT_EQ(genuineEntries.size(), evil.size());
  evil += genuine.substr(genuineEntries.size());
  const std::string archive = beside("together/archive.p2");
  test::writeFile(archive, evil);
  const std::string into = beside("together") + "/..";
  const Lines lines = test::logLinesOf([&] {
    extractArchive(unpack200_.c_str(), archive.c_str(), beside("together/..").c_str(), key_);
  });
  EXPECT_TRUE(has(lines, "File exists: " + into + "/together/archive.p2"));
  EXPECT_TRUE(has(lines, "Doing PSS decode"));
  EXPECT_FALSE(has(lines, kVerified));
}

class MisplacedRecord : public SignedArchive {};

TEST_F(MisplacedRecord, LogsEveryMismatchAndIsRejected) {
  const std::string hex = signatureOver(entries_);
  const std::string bytes = entries_ + tools::signatureRecord(3, hex);
  fs::create_directories(dest());
  const Lines lines = extract(bytes);
  EXPECT_TRUE(test::containsInOrder(
      lines, {std::string(kMismatch) + "asb name mismatch)",
              std::string(kMismatch) + "len mismatch)", std::string(kMismatch) + "sig mismatch)",
              "[ExtractArchive] Produced a signature of length 256"}));
  EXPECT_FALSE(test::exists(dest()));
}

TEST_F(MisplacedRecord, BeyondTheEndOfTheFileIsRejected) {
  expectRejected(entries_ + tools::signatureRecord(1000000000000, signatureOver(entries_)));
  expectRejected(entries_ + tools::signatureRecord(9223372036854775807, signatureOver(entries_)));
}

TEST_F(MisplacedRecord, AtANegativeOffsetIsRejected) {
  expectRejected(entries_ + test::signatureRecord("-2", signatureOver(entries_)));
  expectRejected(entries_ + test::signatureRecord("-9999999999999999999", "ab"));
}

TEST_F(MisplacedRecord, WithTheLengthThatMeansNoneIsRejectedAndNotTakenForUnsigned) {
  expectRejected(entries_ + test::signatureRecord("-1", signatureOver(entries_)));
}

TEST_F(MisplacedRecord, WithALengthThatIsNoNumberIsRejected) {
  expectRejected(entries_ + test::signatureRecord("", signatureOver(entries_)));
  expectRejected(entries_ + test::signatureRecord("x", signatureOver(entries_)));
}

class SignatureText : public SignedArchive {
 protected:
  std::string withHex(const std::string& hex) const {
    return entries_ + test::signatureRecord(std::to_string(entries_.size()), hex);
  }
};

TEST_F(SignatureText, ThatIsEmptyIsRejected) {
  expectRejected(withHex(""));
}

TEST_F(SignatureText, OfAnOddNumberOfDigitsIsRejected) {
  const std::string hex = signatureOver(entries_);
  expectRejected(withHex(hex.substr(0, hex.size() - 1)));
  expectRejected(withHex(hex + "0"));
}

TEST_F(SignatureText, ThatIsNoHexadecimalTextIsRejected) {
  expectRejected(withHex("zz"));
  expectRejected(withHex(std::string(512, ' ')));
}

TEST_F(SignatureText, ShorterOrLongerThanTheModulusIsRejected) {
  const std::string hex = signatureOver(entries_);
  expectRejected(withHex(hex.substr(2)));
  expectRejected(withHex("00" + hex));
  expectRejected(withHex(hex + "00"));
}

TEST_F(SignatureText, LongerThanItsFieldIsRejected) {
  for (const size_t digits : {4094, 4095, 4096, 8190, 8191, 8192, 20000}) {
    expectRejected(withHex(std::string(digits, 'a')));
  }
}

// The check reads less of a text than the extraction does, and says so; it is made with what the
// extraction has read.
TEST_F(SignatureText, IsReadTo8191DigitsByTheExtractionAndTo4095ByTheCheck) {
  struct Case {
    size_t digits;
    int bytes;
    bool isMismatch;
  };
  for (const Case& one : {Case{4095, 2048, false}, Case{4096, 2048, true}, Case{8189, 4095, true},
                          Case{8191, 4096, true}, Case{8192, 4096, true}, Case{9000, 4096, true}}) {
    fs::create_directories(dest());
    const Lines lines = extract(withHex(std::string(one.digits, 'a')));
    EXPECT_TRUE(
        has(lines, "[ExtractArchive] Produced a signature of length " + std::to_string(one.bytes)))
        << one.digits;
    EXPECT_EQ(one.isMismatch, has(lines, std::string(kMismatch) + "sig mismatch)")) << one.digits;
  }
}

TEST_F(SignatureText, ThatLacksOnlyItsEndIsRejected) {
  const std::string whole = signedArchive(entries_);
  expectRejected(whole.substr(0, whole.size() - 1));
  isRequired_ = true;
  expectRejected(whole.substr(0, whole.size() - 1));
}

class SignedNestedArchive : public SignedArchive {};

TEST_F(SignedNestedArchive, IsVerifiedByItsOwnSignature) {
  const std::string lzma = makeTool("lzma64", "cp \"$in\" \"$out\"");
  const test::RecordResult result =
      readRecord(fileRecord("app.p2.l2", signedArchive(entries_)), lzma.c_str());
  EXPECT_TRUE(has(result.lines, kVerified));
  EXPECT_EQ((Lines{"d", "f"}), test::namesIn(dest()));
}

TEST_F(SignedNestedArchive, WithAWrongSignatureRemovesTheDestination) {
  const std::string lzma = makeTool("lzma64", "cp \"$in\" \"$out\"");
  const test::RecordResult result =
      readRecord(fileRecord("app.p2.l2", signedArchive(entries_, "second")), lzma.c_str());
  EXPECT_EQ(0, result.value);
  EXPECT_FALSE(test::exists(dest()));
}

// An archive that brings the tool for its own packed entry. The tool leaves a file beside the
// destination.
class ArchiveWithItsTool : public SignedArchive {
 protected:
  ArchiveWithItsTool() {
    isRequired_ = true;
    unpack200_ = inDest("bin/unpack200");
  }

  bool hasToolRun() const { return test::exists(beside("ran")); }

  const std::string tool_ = "#!/bin/sh\n: > '" + beside("ran") + "'\ncp \"$1\" \"$2\"\n";
  const std::string packed_ =
      fileRecord("bin/unpack200", tool_) + fileRecord("lib/a.jar", "packed", "2");
};

TEST_F(ArchiveWithItsTool, RunsItWhereTheSignatureIsRight) {
  expectAccepted(signedArchive(packed_));
  EXPECT_TRUE(hasToolRun());
  EXPECT_EQ("packed", test::readFile(inDest("lib/a.jar")));
}

TEST_F(ArchiveWithItsTool, DoesNotRunItUnderAnotherKey) {
  expectRejected(signedArchive(packed_, "second"));
  EXPECT_FALSE(hasToolRun());
}

TEST_F(ArchiveWithItsTool, DoesNotRunItUnsigned) {
  expectRejected(packed_);
  EXPECT_FALSE(hasToolRun());
}

TEST_F(ArchiveWithItsTool, DoesNotRunItUnsignedBehindAnEmptyFile) {
  expectRejected(fileRecord("empty", "") + packed_);
  EXPECT_FALSE(hasToolRun());
}

TEST_F(ArchiveWithItsTool, DoesNotRunItInFrontOfARecordThatIsCutOff) {
  expectRejected(packed_ + "0");
  EXPECT_FALSE(hasToolRun());
}

TEST_F(ArchiveWithItsTool, RunsItUnsignedWhereSignaturesAreNotRequired) {
  isRequired_ = false;
  extract(packed_);
  EXPECT_TRUE(hasToolRun());
}

TEST_F(ArchiveWithItsTool, RunsNoToolFromElsewhereEitherUnsigned) {
  unpack200_ = makeTool(
      "unpack200", ": > '" + beside("ran elsewhere") + "'; " + std::string(test::WORKING_TOOL));
  expectRejected(packed_);
  EXPECT_FALSE(test::exists(beside("ran elsewhere")));
  EXPECT_FALSE(hasToolRun());
}
