#include <gtest/gtest.h>

#include <sys/resource.h>

#include <csignal>
#include <filesystem>

#include "archive/archive.h"
#include "tests/unit/archive/archive_fixture.h"

using test::ArchiveTest;
using test::fileRecord;
using test::recordHead;

static const char kBad[] = "\t[ExtractArchiveFile] *************************** ";

static std::string lastLine(const test::Result& result) {
  const std::vector<std::string> lines = test::logLinesOf(result.out);
  return lines.empty() ? "" : lines.back();
}

class DamagedArchive : public ArchiveTest {
 protected:
  void expectEnd(const std::string& bytes, const std::string& line) {
    const test::Result result = extractInChild(bytes);
    EXPECT_EQ(1, result.status);
    EXPECT_EQ(kBad + line, lastLine(result));
  }
};

TEST_F(DamagedArchive, ThatEndsInsideAnEntryNamesTheBytesReadExactly) {
  expectEnd(recordHead("0", "f", "10") + "1234567",
            "Unable to read til end of archive file f (7 of 10)");
  expectEnd(recordHead("0", "f", "10"), "Unable to read til end of archive file f (0 of 10)");
}

TEST_F(DamagedArchive, ThatEndsFarInsideALongEntryNamesTheBytesReadExactly) {
  expectEnd(recordHead("0", "f", "900000") + std::string(654321, 'x'),
            "Unable to read til end of archive file f (654321 of 900000)");
}

TEST_F(DamagedArchive, WithANegativeLengthIsRefusedBeforeAnythingIsWritten) {
  expectEnd(recordHead("0", "f", "-1") + "x", "Refused archive file f (length is impossible)");
  EXPECT_FALSE(test::exists(inDest("f")));
}

TEST_F(DamagedArchive, WithALengthBeyondAnyDiskIsRefusedBeforeAnythingIsWritten) {
  expectEnd(recordHead("0", "f", "99999999999999999999999"),
            "Refused archive file f (length is impossible)");
  expectEnd(recordHead("0", "f", "9223372036854775807"),
            "Refused archive file f (length is impossible)");
  EXPECT_FALSE(test::exists(inDest("f")));
}

TEST_F(DamagedArchive, WithALengthThatIsNoNumberHasAnEmptyEntry) {
  extract(recordHead("0", "f", "many"));
  EXPECT_EQ("", test::readFile(inDest("f")));
}

TEST_F(DamagedArchive, WithATargetThatIsAFolderCannotOpenIt) {
  expectEnd(test::folderRecord("f") + fileRecord("f", "abc"),
            "Unable to extract archive file f (3), unable to open file for writing");
}

TEST_F(DamagedArchive, WithAFileWhereAFolderIsNeededCannotOpenTheTarget) {
  expectEnd(fileRecord("f", "abc") + fileRecord("f/g", "abcd"),
            "Unable to extract archive file f/g (4), unable to open file for writing");
  EXPECT_EQ("abc", test::readFile(inDest("f")));
}

TEST_F(DamagedArchive, WithAnEmptyFileNameCannotOpenTheTarget) {
  expectEnd(fileRecord("", "a"),
            "Unable to extract archive file  (1), unable to open file for writing");
  expectEnd(fileRecord("d/", "a"),
            "Unable to extract archive file d/ (1), unable to open file for writing");
}

TEST_F(DamagedArchive, IntoADestinationThatIsMissingCannotOpenTheTarget) {
  std::filesystem::remove(dest());
  expectEnd(fileRecord("a/f", "x"),
            "Unable to extract archive file a/f (1), unable to open file for writing");
}

TEST_F(DamagedArchive, OnAFullDiskReportsTheFailedWrite) {
  test::writeFile(archivePath(), fileRecord("f", std::string(100000, 'x')));
  const test::Result result = test::runInChild([&] {
    const rlimit limit{50000, 50000};
    setrlimit(RLIMIT_FSIZE, &limit);
    signal(SIGXFSZ, SIG_IGN);
    extractArchive(nullptr, archivePath().c_str(), dest().c_str(), nullptr);
  });
  EXPECT_EQ(1, result.status);
  EXPECT_EQ(std::string(kBad) + "Unable to write to target file", lastLine(result));
}

TEST_F(DamagedArchive, CutAnywhereInAnUnsignedArchiveEndsOrIsAcceptedButNeverCrashes) {
  const std::string whole =
      test::folderRecord("d") + fileRecord("d/a", "hello") + fileRecord("qvArcSpBlock_X", "y");
  for (size_t length = 0; length < whole.size(); ++length) {
    std::filesystem::remove_all(dest());
    std::filesystem::create_directory(dest());
    const test::Result result = extractInChild(whole.substr(0, length));
    EXPECT_EQ(0, result.signal) << length;
    EXPECT_TRUE(result.status == 1 || result.status == test::CODE_RETURNED) << length;
  }
}
