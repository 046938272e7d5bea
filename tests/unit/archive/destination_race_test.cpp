#include <gtest/gtest.h>

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "archive/archive.h"
#include "tests/support/swapper.h"
#include "tests/unit/archive/archive_fixture.h"
#include "tests/unit/archive/signed_archive.h"

namespace fs = std::filesystem;
using Names = std::vector<std::string>;
using test::fileRecord;

namespace {

// Somebody who may write where the destination is puts something else in its place during an
// extraction. An entry that is unpacked by a tool is the moment at which that happens.
class ReplacedDestination : public test::ArchiveTest {
 protected:
  ReplacedDestination() {
    test::writeFile(foreign("b"), "precious", 0600);
    // What the tool's output is looked for as, so that the extraction goes on.
    test::writeFile(foreign("a.jar"), "precious");
  }

  std::string foreign(const std::string& name) const { return beside("foreign/") + name; }
  std::string moved(const std::string& name) const { return beside("moved/") + name; }

  // Makes the tool that moves the destination away and runs `command` then.
  void replaceBy(const std::string& command) {
    unpack200_ = makeTool("unpack200", std::string(test::WORKING_TOOL) + "; mv '" + dest() + "' '" +
                                           beside("moved") + "'; " + command);
  }

  void expectForeignUntouched() {
    EXPECT_EQ((Names{"a.jar", "b"}), test::namesIn(beside("foreign")));
    EXPECT_EQ("precious", test::readFile(foreign("b")));
    EXPECT_EQ(0600u, test::modeOf(foreign("b")));
  }

  // An entry for the tool, then those for which the destination is another.
  const std::string entries_ =
      fileRecord("a.jar", "a", "2") + fileRecord("b", "new") + fileRecord("folder/c", "new");
};

}  // namespace

TEST_F(ReplacedDestination, IsWrittenToWhereItWasMoved) {
  replaceBy("ln -s foreign '" + dest() + "'");
  extractInChild(entries_);
  expectForeignUntouched();
  EXPECT_EQ("new", test::readFile(moved("b")));
  EXPECT_EQ("new", test::readFile(moved("folder/c")));
}

TEST_F(ReplacedDestination, RunsNoToolThatWouldWriteElsewhere) {
  replaceBy("ln -s foreign '" + dest() + "'");
  const test::Result result = extractInChild(entries_ + fileRecord("b", "packed", "2"));
  EXPECT_EQ(1, result.status);
  EXPECT_NE(std::string::npos,
            result.out.find("Refused archive file b (its folder was moved away)"));
  expectForeignUntouched();
}

TEST_F(ReplacedDestination, ByAForeignFolderCostsNoForeignFileWhenItIsRejected) {
  replaceBy("mv '" + beside("foreign") + "' '" + dest() + "'");
  key_ = test::publicKey();
  const test::Result result = extractInChild(
      test::signedArchive(fileRecord("a.jar", "a", "2") + fileRecord("folder/c", "new"), "second"));
  EXPECT_EQ(1, result.status);
  EXPECT_EQ((Names{"a.jar", "b"}), test::namesIn(dest()));
  EXPECT_EQ(Names{}, test::namesIn(beside("moved")));
}

TEST_F(ReplacedDestination, NestedArchiveIsWrittenToAndDeletedWhereItWasMoved) {
  test::writeFile(foreign("inner.p2"), "precious");
  replaceBy("ln -s foreign '" + dest() + "'");
  const std::string lzma = makeTool("lzma64", "cp \"$in\" \"$out\"");
  readRecordInChild(fileRecord("inner.p2", entries_), lzma.c_str());
  EXPECT_EQ("precious", test::readFile(foreign("inner.p2")));
  EXPECT_EQ((Names{"a.jar", "b", "inner.p2"}), test::namesIn(beside("foreign")));
  EXPECT_EQ((Names{"a.jar", "b", "folder"}), test::namesIn(beside("moved")));
}

TEST_F(ReplacedDestination, AgainAndAgainPutsNothingOutside) {
  std::string entries;
  for (int i = 0; i < 40; ++i) {
    entries += fileRecord("b", "new") + fileRecord("folder" + std::to_string(i) + "/c", "new");
  }
  fs::create_symlink("foreign", beside("link"));
  const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(1500);
  int rounds = 0;
  long swaps = 0;
  while (std::chrono::steady_clock::now() < end) {
    const test::Swapper swapper(dest(), beside("link"));
    extractInChild(entries);
    swaps += swapper.count();
    ++rounds;
  }
  printf("%d extractions, %ld swaps\n", rounds, swaps);
  expectForeignUntouched();
  EXPECT_LT(0, swaps) << rounds;
}
