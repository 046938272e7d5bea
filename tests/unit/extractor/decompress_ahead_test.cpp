#include "extractor/archives/decompress_ahead.h"

#include <gtest/gtest.h>
#include <signal.h>

#include <cerrno>
#include <filesystem>
#include <memory>
#include <string>

#include "extractor/run/run.h"
#include "support/events/quit_cleanup.h"
#include "support/files/paths.h"
#include "support/owned.h"
#include "tests/support/files.h"
#include "tests/support/temp_folder.h"
#include "tests/support/wait.h"
#include "tests/unit/extractor/full_disk.h"

using test::field;

namespace {

std::string record(const std::string& path, size_t size) {
  return field("0") + field(path) + field(std::to_string(size)) + std::string(size, 'x');
}

class DecompressAhead : public testing::Test {
 protected:
  DecompressAhead() {
    test::writeFile(folder_ / "tool", "#!/bin/sh\nexec cp \"$2\" \"$3\"\n", 0755);
    setPath(run_->lzmaPath, (folder_ / "tool").c_str());
    setPath(run_->masterFolder, (folder_ / "master").c_str());
    std::filesystem::create_directory(folder_ / "master");
  }
  ~DecompressAhead() override {
    endAhead();
    test::freeBytes = 4096000;
  }

  void carry(const std::string& records) {
    test::writeFile(folder_ / "tail", records);
    stream_.reset(fopen((folder_ / "tail").c_str(), "rb"));
    run_->tailStream = stream_.get();
  }

  test::TempFolder folder_;
  std::unique_ptr<ExtractorRun> run_ = std::make_unique<ExtractorRun>();
  Stream stream_;
};

}  // namespace

TEST_F(DecompressAhead, LeavesTheDiskAloneUnlessItHasRoomForThirtyTwoTimesBothArchives) {
  const std::string first = record("first.p2", 1000);
  carry(first + record("second.p2.l2", SMALLEST_AHEAD));
  test::freeBytes = 32 * (SMALLEST_AHEAD + 1000);
  beginNextAhead(*run_);
  EXPECT_TRUE(test::namesIn(folder_ / "master").empty());
  endAhead();
  test::freeBytes += 33 * 4096;
  beginNextAhead(*run_);
  EXPECT_EQ(1U, test::namesIn(folder_ / "master").size());
}

TEST_F(DecompressAhead, GivesWhatTheToolMadeOnTheArchivesTurn) {
  const std::string first = record("first.p2", 10);
  carry(first + record("second.p2.l2", SMALLEST_AHEAD));
  test::freeBytes = 100 * SMALLEST_AHEAD;
  beginNextAhead(*run_);
  ReadyData ready{};
  EXPECT_FALSE(takeAhead(*run_, &ready));
  fseeko(stream_.get(), static_cast<off_t>(first.size()), SEEK_SET);
  beginNextAhead(*run_);
  ASSERT_TRUE(takeAhead(*run_, &ready));
  EXPECT_EQ(SMALLEST_AHEAD, ready.length);
  EXPECT_TRUE(std::string(SMALLEST_AHEAD, 'x') == test::readFile(ready.data));
}

TEST_F(DecompressAhead, EndsTheToolAndRemovesItsFilesWhenTheUserQuits) {
  const std::string number = folder_ / "number";
  test::writeFile(folder_ / "tool",
                  "#!/bin/sh\n: > \"$3.part\"\necho $$ > '" + number + "'\nexec sleep 600\n", 0755);
  carry(record("first.p2", 10) + record("second.p2.l2", SMALLEST_AHEAD));
  test::freeBytes = 100 * SMALLEST_AHEAD;
  beginNextAhead(*run_);
  ASSERT_TRUE(
      test::comesTrue([&] { return test::exists(number) && !test::readFile(number).empty(); }));
  runQuitCleanup();
  EXPECT_TRUE(test::namesIn(folder_ / "master").empty());
  EXPECT_EQ(-1, kill(static_cast<pid_t>(std::stol(test::readFile(number))), 0));
  EXPECT_EQ(ESRCH, errno);
}

TEST_F(DecompressAhead, RemovesWhatAToolLeftThatFailed) {
  test::writeFile(folder_ / "tool", "#!/bin/sh\n: > \"$3.part\"\nexit 1\n", 0755);
  const std::string first = record("first.p2", 10);
  carry(first + record("second.p2.l2", SMALLEST_AHEAD));
  test::freeBytes = 100 * SMALLEST_AHEAD;
  beginNextAhead(*run_);
  fseeko(stream_.get(), static_cast<off_t>(first.size()), SEEK_SET);
  beginNextAhead(*run_);
  ReadyData ready{};
  EXPECT_FALSE(takeAhead(*run_, &ready));
  const std::string made = test::namesIn(folder_ / "master").at(0);
  EXPECT_TRUE(test::namesIn(folder_ / ("master/" + made)).empty());
}

TEST_F(DecompressAhead, LeavesTheStreamWhereItWas) {
  const std::string before = "before";
  carry(before + record("first.p2", 10) + record("second.p2.l2", SMALLEST_AHEAD));
  fseeko(stream_.get(), static_cast<off_t>(before.size()), SEEK_SET);
  beginNextAhead(*run_);
  EXPECT_EQ(static_cast<off_t>(before.size()), ftello(stream_.get()));
}

TEST_F(DecompressAhead, LeavesTheStreamWhereItWasAndWithoutItsEndWhereItIsCut) {
  for (const std::string& cut : {std::string("0"), field("0") + "fir", record("first.p2", 10),
                                 field("0") + field("first.p2") + field("99"),
                                 field("0") + field("first.p2") + field("9223372036854775807"),
                                 field("0") + field("first.p2") + field("-1")}) {
    carry(cut);
    beginNextAhead(*run_);
    EXPECT_EQ(0, ftello(stream_.get())) << cut;
    EXPECT_FALSE(feof(stream_.get())) << cut;
    ReadyData ready{};
    EXPECT_FALSE(takeAhead(*run_, &ready)) << cut;
  }
}
