#include "tests/blackbox/pack/transcript.h"

#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

#include <string>

#include "tests/support/temp_folder.h"

// Whether the other tests of quorvane-pack can fail, and what they show then.

namespace {

const char kScript[] = "echo one; echo two; echo 'quorvane-pack: three' >&2; : > made; exit 1";

class TranscriptOfAScript : public testing::Test {
 protected:
  const test::TempFolder folder_;
  const test::Transcript run_ = test::runShell(folder_.path(), kScript);
};

TEST_F(TranscriptOfAScript, MeetsWhatIsSoWithoutAFailure) {
  run_.ends(1).prints("one\ntwo\n").reports("quorvane-pack: three\n").fails("three");
  run_.mentions("two").mentionsNo("three").reportsAlso("three").reportsNo("two");
  run_.leaves("made").leaves(folder_ / "made").leavesNo("other").leavesNo(folder_ / "other");
  EXPECT_FALSE(run_.succeeded());
  EXPECT_TRUE(test::runShell("", "exit 0").succeeded());
  test::runShell("", "echo 'that is wrong' >&2; exit 2").isMisused("that is").isMisused();
}

TEST_F(TranscriptOfAScript, FailsTheTestForEachThingThatIsNotSo) {
  EXPECT_NONFATAL_FAILURE(run_.ends(0), "Wanted: status 0");
  EXPECT_NONFATAL_FAILURE(run_.prints("one\ntwo"), "The end of the last line differs.");
  EXPECT_NONFATAL_FAILURE(run_.reports(""), "Line 1 is one too many.");
  EXPECT_NONFATAL_FAILURE(run_.mentions("three"), "this on standard output:\nthree");
  EXPECT_NONFATAL_FAILURE(run_.mentionsNo("two"), "standard output without this:\ntwo");
  EXPECT_NONFATAL_FAILURE(run_.reportsAlso("two"), "this on standard error:\ntwo");
  EXPECT_NONFATAL_FAILURE(run_.reportsNo("three"), "standard error without this:\nthree");
  EXPECT_NONFATAL_FAILURE(run_.fails("thre"), "Line 1 is [quorvane-pack: three], not ");
  EXPECT_NONFATAL_FAILURE(run_.isMisused(), "Wanted: status 2");
  EXPECT_NONFATAL_FAILURE(run_.leaves("other"), "other to exist afterwards");
  EXPECT_NONFATAL_FAILURE(run_.leavesNo("made"), "made to be missing afterwards");
  const test::Transcript misuse = test::runShell("", "echo wrong >&2; exit 2");
  EXPECT_NONFATAL_FAILURE(misuse.isMisused("right"), "at the start of standard error:\nright");
  EXPECT_NONFATAL_FAILURE(misuse.ends(1), "It ended with status 2.");
}

TEST_F(TranscriptOfAScript, ShowsTheCommandAllThatItPrintedAndTheFirstLineThatDiffers) {
  EXPECT_NONFATAL_FAILURE(run_.prints("one\n2\n"), "$ /bin/sh -c 'echo one; echo two; echo '\\''");
  EXPECT_NONFATAL_FAILURE(run_.prints("one\n2\n"),
                          "one\ntwo\nstandard error:\nquorvane-pack: three\nIt ended with status "
                          "1.\n");
  EXPECT_NONFATAL_FAILURE(run_.prints("one\n2\n"), "Line 2 is [two], not [2].");
  EXPECT_NONFATAL_FAILURE(run_.prints("one\ntwo\nmore\n"), "Line 3 is nothing, not [more].");
  EXPECT_NE(std::string::npos, std::string(run_.succeeded().message()).find("$ /bin/sh -c "));
}

TEST(Transcript, OfACommandThatASignalEndsSaysSo) {
  const test::Transcript killed = test::runShell("", "kill -9 $$");
  EXPECT_NONFATAL_FAILURE(killed.ends(0), "It was ended by signal 9.");
}

TEST(Transcript, LeavesOutTheProgressOfACommandAndNothingElse) {
  EXPECT_EQ("[a] x\nwarning\n",
            test::withoutProgress("[1/2] first\n[a] x\n[10] tenth\nwarning\ndone in 3 s\n"));
}

}  // namespace
