#include "support/encoding/field_reader.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "formats/tail_marker.h"
#include "tests/support/capture.h"
#include "tests/support/files.h"
#include "tests/support/owned_text.h"

using test::field;
using Lines = std::vector<std::string>;

namespace {

// A stream over bytes in memory, as a fuzzer would have it.
class TextStream {
 public:
  explicit TextStream(std::string bytes)
      : bytes_(std::move(bytes)), file_(fmemopen(bytes_.data(), bytes_.size(), "rb")) {}
  ~TextStream() { fclose(file_); }
  TextStream(const TextStream&) = delete;
  TextStream& operator=(const TextStream&) = delete;
  operator FILE*() const { return file_; }

 private:
  std::string bytes_;
  FILE* file_;
};

}  // namespace

static std::string read(FILE* stream, int limit = DEFAULT_FIELD_LIMIT) {
  return test::takeText(readString(stream, "Name", limit));
}

static std::string markerBytes() {
  const std::unique_ptr<char, void (*)(void*)> bytes(allocAndInitMarker(), free);
  return {bytes.get(), 128};
}

static int scan(FILE* stream, const std::string& wanted, Lines* lines = nullptr) {
  int consumed = 0;
  const Lines logged = test::logLinesOf([&] {
    consumed = scanToMarker(stream, wanted.data(), static_cast<int>(wanted.size()), "Tail");
  });
  if (lines != nullptr) {
    *lines = logged;
  }
  return consumed;
}

TEST(ScanToMarker, LeavesTheStreamAtTheFirstByteBehindTheMarker) {
  const TextStream stream("before" + markerBytes() + field("after"));
  EXPECT_EQ(6 + 128, scan(stream, markerBytes()));
  EXPECT_EQ("after", read(stream));
}

TEST(ScanToMarker, FindsAMarkerAtTheVeryStart) {
  const TextStream stream(markerBytes());
  EXPECT_EQ(128, scan(stream, markerBytes()));
}

TEST(ScanToMarker, FindsAMarkerBehindAFalseStartThatAnotherByteEnds) {
  const std::string falseStart("\x1D\x43\x00", 3);
  const TextStream stream(falseStart + markerBytes());
  EXPECT_EQ(3 + 128, scan(stream, markerBytes()));
}

TEST(ScanToMarker, MissesAMarkerWhoseFirstByteEndsAFalseStart) {
  const TextStream stream("\x1D\x43" + markerBytes());
  EXPECT_EQ(-1, scan(stream, markerBytes()));
}

TEST(ScanToMarker, FindsTheSecondOfTwoMarkersWhenTheFirstIsMissed) {
  const TextStream stream("\x1D" + markerBytes() + markerBytes());
  EXPECT_EQ(1 + 128 + 128, scan(stream, markerBytes()));
}

TEST(ScanToMarker, LogsAStreamThatEndsFirstAndLeavesItAtItsEnd) {
  const TextStream stream(markerBytes().substr(0, 127));
  Lines lines;
  EXPECT_EQ(-1, scan(stream, markerBytes(), &lines));
  EXPECT_EQ((Lines{"Could not find marker: Tail"}), lines);
  EXPECT_NE(0, feof(stream));
}

TEST(ScanToMarker, SaysNothingWhenItFindsTheMarker) {
  const TextStream stream(markerBytes());
  Lines lines;
  scan(stream, markerBytes(), &lines);
  EXPECT_EQ((Lines{}), lines);
}

TEST(ScanToMarker, GivesZeroForALengthOfZeroWithoutReading) {
  const TextStream stream("abc");
  EXPECT_EQ(0, scan(stream, ""));
  EXPECT_EQ('a', getc(stream));
}

TEST(ScanToMarker, SearchesForAMarkerOfAnotherLengthAndName) {
  const std::string wanted(64, '\xFE');
  const TextStream stream(std::string(100, '\xFE'));
  EXPECT_EQ(64, scanToMarker(stream, wanted.data(), 64, "Params"));
  EXPECT_EQ((Lines{"Could not find marker: Params"}), test::logLinesOf([&] {
              EXPECT_EQ(-1, scanToMarker(stream, wanted.data(), 64, "Params"));
            }));
}

TEST(ReadString, ReadsAFieldWithItsTerminator) {
  const TextStream stream(field("one") + field("two"));
  EXPECT_EQ("one", read(stream));
  EXPECT_EQ("two", read(stream));
}

TEST(ReadString, GivesAnEmptyTextForAnEmptyFieldBetweenTwoOthers) {
  const TextStream stream(field("one") + field("") + field("two"));
  EXPECT_EQ("one", read(stream));
  char* empty = readString(stream, "Name");
  ASSERT_NE(nullptr, empty);
  EXPECT_EQ("", test::takeText(empty));
  EXPECT_EQ("two", read(stream));
}

TEST(ReadString, KeepsEveryByteOtherThanZero) {
  std::string bytes;
  for (int byte = 1; byte <= 255; ++byte) {
    bytes.push_back(static_cast<char>(byte));
  }
  const TextStream stream(field(bytes));
  EXPECT_EQ(bytes, read(stream));
}

TEST(ReadString, FillsTheRestOfItsBlockWithZeros) {
  const TextStream stream(field("ab"));
  char* block = readString(stream, "Name", 100);
  EXPECT_EQ("ab" + std::string(98, '\0'), std::string(block, 100));
  free(block);
}

TEST(ReadString, GivesAFieldThatTheEndOfTheStreamCutsShortAsRead) {
  const TextStream stream(field("one") + "tw");
  EXPECT_EQ("one", read(stream));
  EXPECT_EQ("tw", read(stream));
  EXPECT_EQ("", read(stream));
  EXPECT_EQ("", read(stream));
}

TEST(ReadString, ReadsAKeyOf8190CharactersWhole) {
  const std::string key(8190, 'A');
  const TextStream stream(field(key) + field("next"));
  const std::string out = test::capture([&] { EXPECT_EQ(key, read(stream, 8192)); }).out;
  EXPECT_EQ("", out);
  EXPECT_EQ("next", read(stream));
}

TEST(ReadString, WarnsOfAKeyOf8191CharactersAndGivesAnEmptyNextField) {
  const std::string key(8191, 'A');
  const TextStream stream(field(key) + field("next"));
  const test::Captured captured = test::capture([&] { EXPECT_EQ(key, read(stream, 8192)); });
  EXPECT_EQ("***WARNING - STRING TOO LONG FOR ALLOC 8191>8192! (READSTRING) [" + key + "]\n",
            captured.out);
  EXPECT_EQ("", captured.err) << "the warning is not for the log";
  EXPECT_EQ("", read(stream));
  EXPECT_EQ("next", read(stream));
}

TEST(ReadString, LeavesTheRestOfATooLongFieldForTheNextRead) {
  const TextStream stream(field("abcdefgh") + field("next"));
  test::capture([&] {
    EXPECT_EQ("abcd", read(stream, 5));
    EXPECT_EQ("efgh", read(stream, 6)) << "four bytes and their end fit a limit of six";
  });
  EXPECT_EQ("next", read(stream));
}

TEST(ReadString, TakesTheSmallestLimit) {
  const TextStream stream("xyz");
  EXPECT_EQ("***WARNING - STRING TOO LONG FOR ALLOC 1>2! (READSTRING) [x]\n",
            test::capture([&] { EXPECT_EQ("x", read(stream, 2)); }).out);
}

TEST(ReadString, HasALimitOf1024WithoutOne) {
  const std::string most(1022, 'x');
  const TextStream stream(field(most) + field(most + "y") + field("next"));
  EXPECT_EQ(most, test::takeText(readString(stream, "Name")));
  EXPECT_EQ("***WARNING - STRING TOO LONG FOR ALLOC 1023>1024! (READSTRING) [" + most + "y]\n",
            test::capture([&] {
              EXPECT_EQ(most + "y", test::takeText(readString(stream, "Name")));
            }).out);
}

static long number(const std::string& text) {
  const TextStream stream(field(text));
  return readInt(stream, "Name");
}

TEST(ReadInt, ConvertsDecimalTextUpToTheFirstOtherCharacter) {
  EXPECT_EQ(1407, number("1407"));
  EXPECT_EQ(-5, number("-5"));
  EXPECT_EQ(7, number(" \t\n+7"));
  EXPECT_EQ(12, number("12abc"));
  EXPECT_EQ(100, number("0100"));
}

TEST(ReadInt, GivesZeroForTextWithoutDigits) {
  EXPECT_EQ(0, number(""));
  EXPECT_EQ(0, number("abc"));
  EXPECT_EQ(0, number("-"));
}

TEST(ReadInt, ReadsWithALimitOf40) {
  const TextStream stream(field("1" + std::string(38, ' ')) + field("next"));
  EXPECT_EQ("***WARNING - STRING TOO LONG FOR ALLOC 39>40! (READSTRING) [1" + std::string(38, ' ') +
                "]\n",
            test::capture([&] { EXPECT_EQ(1, readInt(stream, "Name")); }).out);
  EXPECT_EQ(0, readInt(stream, "Name"));
  EXPECT_EQ("next", read(stream));
}

static bool boolean(const std::string& text) {
  const TextStream stream(field(text));
  return readBoolean(stream, "Name");
}

TEST(ReadBoolean, IsTrueExactlyForANumberOfOne) {
  EXPECT_TRUE(boolean("1"));
  EXPECT_TRUE(boolean("01"));
  EXPECT_TRUE(boolean("1abc"));
  EXPECT_TRUE(boolean("   1"));
}

TEST(ReadBoolean, IsFalseForWordsAndOtherNumbers) {
  EXPECT_FALSE(boolean("true"));
  EXPECT_FALSE(boolean("2"));
  EXPECT_FALSE(boolean("0"));
  EXPECT_FALSE(boolean("-1"));
  EXPECT_FALSE(boolean("11"));
  EXPECT_FALSE(boolean(""));
}
