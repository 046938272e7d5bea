#include <gtest/gtest.h>

#include <unistd.h>

#include <filesystem>

#include "archive/archive.h"
#include "tests/unit/archive/archive_fixture.h"

using test::ArchiveTest;
using test::fileRecord;
using Lines = std::vector<std::string>;

class Pack200Entry : public ArchiveTest {
 protected:
  void expectNotUnpacked(const test::Result& result) {
    EXPECT_EQ(101, result.status);
    EXPECT_EQ("\t[ExtractArchiveFile] ERROR: unpack200 (" + inDest("a.jar") + ") does not exist!",
              test::logLinesOf(result.out).back());
    EXPECT_FALSE(test::exists(inDest("a.jar")));
  }
};

TEST_F(Pack200Entry, IsWrittenWithASuffixUnpackedAndThePackedFileRemoved) {
  unpack200_ = makeTool("unpack200", test::WORKING_TOOL);
  EXPECT_FALSE(pack200EntryMet);
  const test::RecordResult result = readRecord(fileRecord("lib/a.jar", "packed", "2"));
  EXPECT_EQ(0, result.value);
  EXPECT_TRUE(pack200EntryMet);
  EXPECT_EQ("<packed>", test::readFile(inDest("lib/a.jar")));
  EXPECT_EQ(Lines{"a.jar"}, test::namesIn(inDest("lib")));
  const std::string packed = inDest("lib/a.jar.p2");
  const Lines wanted = {"[ExtractArchiveFile] Extracting lib/a.jar (::2)",
                        "\t[ExtractArchiveFile] Extracting to " + packed,
                        "[ChMod] Executing chmod -R 755 \"" + packed + "\"",
                        "[Spawner] Setting spawner exe to " + unpack200_,
                        "[Spawner] Appended argument " + unpack200_,
                        "[Spawner] Appended argument " + packed,
                        "[Spawner] Appended argument " + inDest("lib/a.jar")};
  EXPECT_TRUE(test::containsInOrder(result.lines, wanted));
}

TEST_F(Pack200Entry, IsUnpackedInAWholeArchive) {
  unpack200_ = makeTool("unpack200", test::WORKING_TOOL);
  extract(fileRecord("a.jar", "1", "2") + fileRecord("b.jar", "2", "2"));
  EXPECT_EQ("<1>", test::readFile(inDest("a.jar")));
  EXPECT_EQ("<2>", test::readFile(inDest("b.jar")));
}

TEST_F(Pack200Entry, EndsTheProcessWhenTheToolIsMissing) {
  unpack200_ = beside("no-such-tool");
  expectNotUnpacked(extractInChild(fileRecord("a.jar", "x", "2")));
}

TEST_F(Pack200Entry, EndsTheProcessWhenThereIsNoTool) {
  expectNotUnpacked(extractInChild(fileRecord("a.jar", "x", "2")));
}

TEST_F(Pack200Entry, EndsTheProcessWhenTheToolMakesNothing) {
  unpack200_ = makeTool("unpack200", test::SILENT_TOOL);
  expectNotUnpacked(extractInChild(fileRecord("a.jar", "x", "2")));
}

TEST_F(Pack200Entry, LeavesNothingHalfWrittenWhenTheToolFails) {
  unpack200_ = makeTool("unpack200", test::FAILING_TOOL);
  expectNotUnpacked(extractInChild(fileRecord("a.jar", "x", "2")));
}

TEST_F(Pack200Entry, LeavesNothingHalfWrittenWhenTheToolIsKilled) {
  unpack200_ = makeTool("unpack200", test::KILLED_TOOL);
  expectNotUnpacked(extractInChild(fileRecord("a.jar", "x", "2")));
}

TEST_F(Pack200Entry, DoesNotTakeAnOlderFileForTheToolsWork) {
  unpack200_ = makeTool("unpack200", test::SILENT_TOOL);
  expectNotUnpacked(extractInChild(fileRecord("a.jar", "old") + fileRecord("a.jar", "x", "2")));
}

class LzmaEntry : public ArchiveTest {
 protected:
  LzmaEntry() : lzma_(makeTool("lzma64", test::WORKING_TOOL)) {}

  // Neither an older file nor half of a new one passes for the entry.
  void expectNotDecompressed(const test::Result& result) {
    EXPECT_EQ(1, result.status);
    EXPECT_TRUE(test::namesIn(dest()).empty());
  }

  std::string lzma_;
};

TEST_F(LzmaEntry, LosesItsSuffixWithATool) {
  const test::RecordResult result = readRecord(fileRecord("lib/x.jar.l2", "data"), lzma_.c_str());
  EXPECT_EQ(0, result.value);
  EXPECT_EQ(Lines{"x.jar"}, test::namesIn(inDest("lib")));
  EXPECT_EQ("<data>", test::readFile(inDest("lib/x.jar")));
  const Lines wanted = {
      "\t[ExtractArchiveFile] Requires un-LZMA",
      "\t[ExtractArchiveFile] Created outpath " + inDest("lib/x.jar") + " and spawning",
      "[Spawner] Appended argument " + lzma_,
      "[Spawner] Appended argument d",
      "[Spawner] Appended argument " + inDest("lib/x.jar.l2"),
      "[Spawner] Appended argument " + inDest("lib/x.jar"),
      "\t[ExtractArchiveFile] Finished decompressing"};
  EXPECT_TRUE(test::containsInOrder(result.lines, wanted));
}

TEST_F(LzmaEntry, StaysAsWrittenWithoutATool) {
  readRecord(fileRecord("x.jar.l2", "data"));
  EXPECT_EQ(Lines{"x.jar.l2"}, test::namesIn(dest()));
}

TEST_F(LzmaEntry, ThatTheToolMakesNothingOfEndsTheProcess) {
  for (const char* tool : {test::FAILING_TOOL, test::KILLED_TOOL, test::SILENT_TOOL}) {
    lzma_ = makeTool("lzma64", tool);
    test::writeFile(inDest("x"), "older");
    expectNotDecompressed(readRecordInChild(fileRecord("x.l2", "data"), lzma_.c_str()));
  }
}

TEST_F(LzmaEntry, WhoseToolCannotBeStartedEndsTheProcess) {
  expectNotDecompressed(
      readRecordInChild(fileRecord("x.l2", "data"), beside("no-such-tool").c_str()));
}

TEST_F(LzmaEntry, ThatIsPackedWithPack200TooIsUnpackedFirst) {
  unpack200_ = makeTool("unpack200", "{ printf 'U'; cat \"$in\"; } > \"$out\"");
  readRecord(fileRecord("x.l2", "data", "2"), lzma_.c_str());
  EXPECT_EQ(Lines{"x"}, test::namesIn(dest()));
  EXPECT_EQ("<Udata>", test::readFile(inDest("x")));
}

TEST_F(LzmaEntry, OfATargetShorterThanFourCharactersIsNotLookedFor) {
  const test::Result result = test::runInChild([&] {
    ASSERT_EQ(0, chdir(dest().c_str()));
    test::writeFile(beside("stream"), fileRecord("f", "x"));
    FILE* stream = fopen(beside("stream").c_str(), "rb");
    long signedLength = -1;
    extractArchiveFileCheckSignature(lzma_.c_str(), nullptr, ".", stream, &signedLength, nullptr,
                                     nullptr);
  });
  EXPECT_EQ(test::CODE_RETURNED, result.status);
  EXPECT_EQ("\t[ExtractArchiveFile] Path to file too short to check for LZMA",
            test::logLinesOf(result.out).back());
  EXPECT_EQ("x", test::readFile(inDest("f")));
}

class NestedArchive : public ArchiveTest {
 protected:
  // Copies: what it makes of an archive is that archive.
  NestedArchive() : lzma_(makeTool("lzma64", "cp \"$in\" \"$out\"")) {}

  std::string lzma_;
};

TEST_F(NestedArchive, IsUnpackedIntoTheSameFolderAndDeleted) {
  const std::string inner = fileRecord("a", "A") + test::folderRecord("d");
  const test::RecordResult result = readRecord(fileRecord("x/inner.p2", inner), lzma_.c_str());
  EXPECT_EQ(0, result.value);
  EXPECT_EQ((Lines{"a", "d", "x"}), test::namesIn(dest()));
  EXPECT_TRUE(test::namesIn(inDest("x")).empty());
  const Lines wanted = {
      "\t[ExtractArchiveFile] Starting un-p2Archiving",
      "[ExtractArchive] Extracting archive " + inDest("x/inner.p2") + " into " + dest(),
      "[ExtractArchiveFile] Extracting a (::0)", "[ExtractArchive] Done extracting archive.",
      "\t[ExtractArchiveFile] Finished un-archiving"};
  EXPECT_TRUE(test::containsInOrder(result.lines, wanted));
}

TEST_F(NestedArchive, StaysAsWrittenWithoutALzmaTool) {
  readRecord(fileRecord("inner.p2", fileRecord("a", "A")));
  EXPECT_EQ(Lines{"inner.p2"}, test::namesIn(dest()));
}

TEST_F(NestedArchive, ThatIsCompressedIsDecompressedFirst) {
  readRecord(fileRecord("inner.p2.l2", fileRecord("a", "A")), lzma_.c_str());
  EXPECT_EQ(Lines{"a"}, test::namesIn(dest()));
}

TEST_F(NestedArchive, ThatCannotBeDecompressedEndsTheProcess) {
  lzma_ = makeTool("lzma64", test::FAILING_TOOL);
  const test::Result result = readRecordInChild(fileRecord("inner.p2.l2", "x"), lzma_.c_str());
  EXPECT_EQ(1, result.status);
  EXPECT_TRUE(test::namesIn(dest()).empty());
}

TEST_F(NestedArchive, ThreeDeepIsOpenedOneLevelAndTheRestStaysAsWritten) {
  const std::string third = fileRecord("deepest", "D");
  const std::string second = fileRecord("third.p2", third) + fileRecord("s.l2", "S");
  const std::string first = fileRecord("second.p2", second) + fileRecord("f", "F");
  readRecord(fileRecord("first.p2", first), lzma_.c_str());
  EXPECT_EQ((Lines{"f", "second.p2"}), test::namesIn(dest()));
  EXPECT_EQ(second, test::readFile(inDest("second.p2")));
}

TEST_F(NestedArchive, HoldsPack200Entries) {
  unpack200_ = makeTool("unpack200", test::WORKING_TOOL);
  readRecord(fileRecord("inner.p2", fileRecord("a.jar", "J", "2")), lzma_.c_str());
  EXPECT_EQ("<J>", test::readFile(inDest("a.jar")));
}

TEST_F(NestedArchive, WithoutASignatureRemovesTheDestinationWhenOneIsRequired) {
  isRequired_ = true;
  readRecord(fileRecord("inner.p2", fileRecord("a", "A")), lzma_.c_str());
  EXPECT_FALSE(test::exists(dest()));
}

TEST_F(NestedArchive, ThatHoldsAnEntryOfItsOwnPathReplacesItAndIsReadToItsEnd) {
  const std::string inner = fileRecord("inner.p2", "not an archive") + fileRecord("b", "B");
  readRecord(fileRecord("inner.p2", inner), lzma_.c_str());
  EXPECT_EQ(Lines{"b"}, test::namesIn(dest()));
}
