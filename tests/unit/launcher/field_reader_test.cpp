#include "launcher/field_reader.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "launcher/tail_marker.h"
#include "tests/support/capture.h"
#include "tests/support/files.h"

using test::field;
using Texts = std::vector<std::string>;

// A stream that holds the given bytes.
class Stream {
 public:
  explicit Stream(const std::string& bytes) : file_(tmpfile()) {
    fwrite(bytes.data(), 1, bytes.size(), file_);
    rewind(file_);
  }
  ~Stream() { fclose(file_); }
  Stream(const Stream&) = delete;
  Stream& operator=(const Stream&) = delete;

  operator FILE*() const { return file_; }

 private:
  FILE* file_;
};

static std::string readText(FILE* stream, int limit) {
  char* block = readString(stream, "A Field", limit);
  const std::string text = block;
  free(block);
  return text;
}

static std::string tailMarker() {
  char* block = allocAndInitMarker();
  const std::string bytes(block, TAIL_MARKER_SIZE);
  free(block);
  return bytes;
}

static int scanForTail(FILE* stream) {
  return scanToMarker(stream, tailMarker().data(), TAIL_MARKER_SIZE, "Tail");
}

TEST(ReadString, ReturnsAFieldWithoutItsTerminator) {
  const Stream stream(field("one") + field("two"));
  EXPECT_EQ("one", readText(stream, 1024));
  EXPECT_EQ("two", readText(stream, 1024));
}

TEST(ReadString, AnEmptyFieldBetweenTwoOthersIsAnEmptyTextAndNotNull) {
  const Stream stream(field("one") + field("") + field("three"));
  EXPECT_EQ("one", readText(stream, 1024));
  char* empty = readString(stream, "Empty");
  ASSERT_NE(nullptr, empty);
  EXPECT_STREQ("", empty);
  free(empty);
  EXPECT_EQ("three", readText(stream, 1024));
}

TEST(ReadString, AFieldCutShortByTheEndIsReturnedAsRead) {
  const Stream stream("cut");
  EXPECT_EQ("cut", readText(stream, 1024));
  EXPECT_EQ("", readText(stream, 1024));
}

TEST(ReadString, ZeroFillsTheWholeBlock) {
  const Stream stream(field("ab"));
  char* block = readString(stream, "A Field", 16);
  EXPECT_EQ("ab" + std::string(14, '\0'), std::string(block, 16));
  free(block);
}

TEST(ReadString, TakesBytesAbove127AsTheyAre) {
  const Stream stream(field("\xFF\xE9\x80"));
  EXPECT_EQ("\xFF\xE9\x80", readText(stream, 1024));
}

TEST(ReadString, APublicKeyOf8190CharactersIsReadWhole) {
  const std::string key(8190, 'a');
  const Stream stream(field(key) + field("1"));
  const test::Captured captured = test::capture([&] { EXPECT_EQ(key, readText(stream, 8192)); });
  EXPECT_EQ("", captured.out);
  EXPECT_EQ("1", readText(stream, 1024));
}

TEST(ReadString, APublicKeyOf8191CharactersWarnsAndTheNextFieldReadsAsEmpty) {
  const std::string key(8191, 'a');
  const Stream stream(field(key) + field("1"));
  const test::Captured captured = test::capture([&] { EXPECT_EQ(key, readText(stream, 8192)); });
  EXPECT_EQ("***WARNING - STRING TOO LONG FOR ALLOC 8191>8192! (READSTRING) [" + key + "]\n",
            captured.out);
  EXPECT_EQ("", readText(stream, 1024));
  EXPECT_EQ("1", readText(stream, 1024));
}

TEST(ReadString, OfAnOverlongFieldTheNextReadBeginsInsideIt) {
  const Stream stream(field("abcdefgh") + field("next"));
  test::capture([&] { EXPECT_EQ("abc", readText(stream, 4)); });
  test::capture([&] { EXPECT_EQ("def", readText(stream, 4)); });
  EXPECT_EQ("gh", readText(stream, 4));
  EXPECT_EQ("next", readText(stream, 1024));
}

TEST(ReadString, WithTheSmallestLimitTakesOneByte) {
  const Stream stream(field("ab"));
  test::capture([&] { EXPECT_EQ("a", readText(stream, 2)); });
}

TEST(ReadString, WithoutALimitTakes1022Characters) {
  const std::string text(1022, 'x');
  const Stream stream(field(text) + field("next"));
  char* block = readString(stream, "A Field");
  EXPECT_EQ(text, block);
  free(block);
  EXPECT_EQ("next", readText(stream, 1024));
}

static long numberIn(const std::string& text) {
  const Stream stream(field(text));
  return readInt(stream, "A Number");
}

TEST(ReadInt, ConvertsSignsAndLeadingBlanksAndStopsAtTheFirstOtherCharacter) {
  EXPECT_EQ(42, numberIn("42"));
  EXPECT_EQ(-7, numberIn(" \t-7x9"));
  EXPECT_EQ(0, numberIn("none"));
  EXPECT_EQ(0, numberIn(""));
}

TEST(ReadInt, ReadsAtMost39Characters) {
  const Stream stream(field(std::string(38, '0') + "17"));
  test::capture([&] { EXPECT_EQ(1, readInt(stream, "A Number")); });
}

static bool truthOf(const std::string& text) {
  const Stream stream(field(text));
  return readBoolean(stream, "A Flag");
}

TEST(ReadBoolean, IsTrueForEveryTextThatConvertsToOne) {
  EXPECT_TRUE(truthOf("1"));
  EXPECT_TRUE(truthOf("01"));
  EXPECT_TRUE(truthOf("1abc"));
  EXPECT_TRUE(truthOf("  1"));
}

TEST(ReadBoolean, IsFalseForEveryOtherText) {
  EXPECT_FALSE(truthOf("true"));
  EXPECT_FALSE(truthOf("2"));
  EXPECT_FALSE(truthOf("0"));
  EXPECT_FALSE(truthOf(""));
}

TEST(ScanToMarker, ReturnsTheBytesConsumedAndLeavesTheStreamBehindTheMarker) {
  const Stream stream("code" + tailMarker() + field("first"));
  EXPECT_EQ(4 + TAIL_MARKER_SIZE, scanForTail(stream));
  EXPECT_EQ("first", readText(stream, 1024));
}

TEST(ScanToMarker, WithoutMarkerLogsItsNameAndReturnsMinusOne) {
  const Stream stream("no such thing");
  EXPECT_EQ((Texts{"Could not find marker: Tail"}),
            test::logLinesOf([&] { EXPECT_EQ(-1, scanForTail(stream)); }));
}

TEST(ScanToMarker, AMarkerCutShortByTheEndIsNotFound) {
  const Stream stream(tailMarker().substr(0, TAIL_MARKER_SIZE - 1));
  test::capture([&] { EXPECT_EQ(-1, scanForTail(stream)); });
}

TEST(ScanToMarker, AByteThatBreaksAFalseStartIsDropped) {
  const Stream stream(std::string("\x1D\x43\0", 3) + tailMarker());
  EXPECT_EQ(3 + TAIL_MARKER_SIZE, scanForTail(stream));
}

TEST(ScanToMarker, AMarkerWhoseFirstByteBreaksAFalseStartIsNotFound) {
  const Stream stream("\x1D\x43" + tailMarker());
  test::capture([&] { EXPECT_EQ(-1, scanForTail(stream)); });
}

TEST(ScanToMarker, ALengthOfZeroReturnsAtOnceWithoutReading) {
  const Stream stream("x");
  EXPECT_EQ(0, scanToMarker(stream, tailMarker().data(), 0, "Tail"));
  EXPECT_EQ('x', fgetc(stream));
}

TEST(ScanToMarker, FindsBytesAbove127) {
  const Stream stream("ab\x80\xFFz");
  EXPECT_EQ(4, scanToMarker(stream, "\x80\xFF", 2, "Params"));
}
