#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <climits>
#include <filesystem>

#include "archive/archive.h"
#include "archive/entry_path.h"
#include "support/encoding/field_reader.h"
#include "tests/unit/archive/archive_fixture.h"

namespace fs = std::filesystem;
using test::ArchiveTest;
using test::fileRecord;
using test::folderRecord;

class EscapingPath : public ArchiveTest {
 protected:
  EscapingPath() { fs::create_directory(beside("outside")); }

  // Expects `bytes` to end the process with a refusal of `path`, and nothing outside the
  // destination to have changed.
  void expectRefused(const std::string& bytes, const std::string& path, const std::string& why) {
    const test::Result result = extractInChild(bytes);
    EXPECT_EQ(1, result.status) << path;
    EXPECT_EQ("\t[ExtractArchiveFile] *************************** Refused archive file " + path +
                  " (" + why + ")",
              test::logLinesOf(result.out).back());
    EXPECT_TRUE(test::namesIn(beside("outside")).empty());
  }

  static constexpr char kLink[] = "path passes through a symbolic link";
};

TEST_F(EscapingPath, ThatIsAbsoluteIsRefused) {
  const std::string path = beside("outside/f");
  expectRefused(fileRecord(path, "x"), path, "path is absolute");
  expectRefused(folderRecord("/"), "/", "path is absolute");
}

TEST_F(EscapingPath, WithAParentComponentAnywhereIsRefused) {
  const char why[] = "path leads out of the destination";
  for (const char* path : {"..", "../outside/f", "a/../../outside/f", "a/..", "a/../f", "./../f"}) {
    expectRefused(fileRecord(path, "x"), path, why);
    expectRefused(folderRecord(path), path, why);
    EXPECT_TRUE(test::namesIn(dest()).empty()) << path;
  }
}

TEST_F(EscapingPath, WithDotsThatAreNoParentComponentIsNot) {
  for (const char* path : {"...", "..a", "a..", "a/..b/c", ".", "./a", "a//b", "a/"}) {
    EXPECT_EQ(nullptr, entryPathError(path)) << path;
  }
  extract(fileRecord("./a//..b/.c", "x"));
  EXPECT_EQ("x", test::readFile(inDest("a/..b/.c")));
}

TEST_F(EscapingPath, LongerThanItsFieldIsRefused) {
  const std::string longest(DEFAULT_FIELD_LIMIT - 2, 'a');
  expectRefused(fileRecord(longest + "bc", "x"), longest + "b", "path is too long");
  expectRefused(fileRecord(longest + "b", "x"), longest + "b", "path is too long");
}

TEST_F(EscapingPath, ThatDoesNotFitAPathBufferWithItsDestinationIsRefused) {
  const std::string path(1000, 'a');
  // As long as the system does not take any more, longer than that, and longer than the buffer.
  for (const size_t length :
       {PATH_MAX - path.size(), size_t{PATH_MAX - 500}, size_t{PATH_MAX - 1}}) {
    for (const char* type : {"0", "2"}) {
      test::writeFile(archivePath(), fileRecord(path, "x", type));
      const std::string deep = dest() + std::string(length - dest().size(), '/');
      const test::Result result = test::runInChild(
          [&] { extractArchive(nullptr, archivePath().c_str(), deep.c_str(), nullptr); });
      EXPECT_EQ(1, result.status);
      EXPECT_NE(std::string::npos, test::logLinesOf(result.out).back().find("(path is too long)"));
      EXPECT_TRUE(test::namesIn(dest()).empty()) << type;
    }
  }
}

TEST_F(EscapingPath, ThroughALinkedFolderIsRefused) {
  fs::create_symlink("../outside", inDest("link"));
  expectRefused(fileRecord("link/f", "x"), "link/f", kLink);
  expectRefused(folderRecord("link/d"), "link/d", kLink);
  expectRefused(fileRecord("link/a/b/f", "x"), "link/a/b/f", kLink);
}

TEST_F(EscapingPath, ThroughALinkFurtherDownIsRefused) {
  fs::create_directory(inDest("a"));
  fs::create_symlink(beside("outside"), inDest("a/link"));
  expectRefused(fileRecord("a/link/f", "x"), "a/link/f", kLink);
}

TEST_F(EscapingPath, WhoseLastComponentIsALinkIsRefused) {
  fs::create_symlink(beside("outside/f"), inDest("link"));
  expectRefused(fileRecord("link", "x"), "link", kLink);
  expectRefused(folderRecord("link"), "link", kLink);
  EXPECT_TRUE(fs::is_symlink(inDest("link")));
}

TEST_F(EscapingPath, WhoseLastComponentLinksAFolderIsRefusedForAFolder) {
  fs::create_symlink(beside("outside"), inDest("link"));
  expectRefused(folderRecord("link"), "link", kLink);
}

TEST_F(EscapingPath, ThroughALinkThatStaysInsideIsRefusedToo) {
  fs::create_directory(inDest("real"));
  fs::create_symlink("real", inDest("link"));
  expectRefused(fileRecord("link/f", "x"), "link/f", kLink);
}

TEST_F(EscapingPath, WhoseUnpackedFileIsALinkIsRefused) {
  unpack200_ = makeTool("unpack200", test::WORKING_TOOL);
  fs::create_symlink(beside("outside/f"), inDest("a.jar"));
  expectRefused(fileRecord("a.jar", "x", "2"), "a.jar", kLink);
  EXPECT_FALSE(test::exists(inDest("a.jar.p2")));
}

TEST_F(EscapingPath, WhosePackedFileIsALinkIsRefused) {
  unpack200_ = makeTool("unpack200", test::WORKING_TOOL);
  fs::create_symlink(beside("outside/f"), inDest("a.jar.p2"));
  expectRefused(fileRecord("a.jar", "x", "2"), "a.jar", kLink);
}

TEST_F(EscapingPath, WhoseDecompressedFileIsALinkIsRefused) {
  const std::string lzma = makeTool("lzma64", test::WORKING_TOOL);
  fs::create_symlink(beside("outside/f"), inDest("x"));
  test::writeFile(archivePath(), fileRecord("x.l2", "x"));
  const test::Result result = test::runInChild([&] {
    FILE* stream = fopen(archivePath().c_str(), "rb");
    long signedLength = -1;
    extractArchiveFileCheckSignature(lzma.c_str(), nullptr, dest().c_str(), stream, &signedLength,
                                     nullptr, nullptr);
  });
  EXPECT_EQ(1, result.status);
  EXPECT_TRUE(test::namesIn(beside("outside")).empty());
}

TEST_F(EscapingPath, DestinationThatIsItselfALinkIsRefused) {
  fs::remove(dest());
  fs::create_symlink("outside", dest());
  expectRefused(fileRecord("a/f", "x"), "a/f", kLink);
  expectRefused(folderRecord("d"), "d", kLink);
  expectRefused(folderRecord(""), "", kLink);
}

TEST_F(EscapingPath, DestinationBelowALinkIsReached) {
  fs::create_directory_symlink(fs::path(dest()).parent_path(), beside("volume"));
  test::writeFile(archivePath(), fileRecord("a/f", "x"));
  test::logLinesOf([&] {
    extractArchive(nullptr, archivePath().c_str(), beside("volume/dest").c_str(), nullptr);
  });
  EXPECT_EQ("x", test::readFile(inDest("a/f")));
}

TEST_F(EscapingPath, FileWithASecondNameElsewhereIsReplacedNotWrittenThrough) {
  test::writeFile(beside("precious"), "precious");
  fs::create_hard_link(beside("precious"), inDest("f"));
  extract(fileRecord("f", "new"));
  EXPECT_EQ("new", test::readFile(inDest("f")));
  EXPECT_EQ("precious", test::readFile(beside("precious")));
}

TEST_F(EscapingPath, PipeInThePlaceOfAFileIsReplacedNotWaitedFor) {
  ASSERT_EQ(0, mkfifo(inDest("f").c_str(), 0600));
  extract(fileRecord("f", "new"));
  EXPECT_EQ("new", test::readFile(inDest("f")));
}
