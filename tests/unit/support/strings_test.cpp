#include "support/text/strings.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstdlib>
#include <cstring>
#include <string>

#include "tests/support/files.h"
#include "tests/support/owned_text.h"
#include "tests/support/temp_folder.h"

TEST(AllocCopy, GivesANewBlockWithTheSameText) {
  char text[] = "abc";
  char* copy = allocCopy(text);
  EXPECT_NE(text, copy);
  EXPECT_EQ("abc", test::takeText(copy));
  EXPECT_EQ("", test::takeText(allocCopy("")));
}

TEST(AllocSubstring, CopiesTheGivenBytesAndEndsThem) {
  EXPECT_EQ("bcd", test::takeText(allocSubstring("abcdef", 1, 3)));
  EXPECT_EQ("", test::takeText(allocSubstring("abcdef", 2, 0)));
}

TEST(AllocSubstring, GivesZerosForBytesOutsideTheText) {
  char* part = allocSubstring("abc", 2, 5);
  EXPECT_EQ(0, memcmp("c\0\0\0\0", part, 6));
  free(part);
  EXPECT_EQ("", test::takeText(allocSubstring("abc", 3, 5)));
  EXPECT_EQ("", test::takeText(allocSubstring("abc", 4, 5)));
  EXPECT_EQ("", test::takeText(allocSubstring("abc", -1, 5)));
  EXPECT_EQ("", test::takeText(allocSubstring("abc", 1, -5)));
  EXPECT_EQ("", test::takeText(allocSubstring("abc", INT_MAX, 1)));
}

TEST(AllocTempString, JoinsItsParts) {
  EXPECT_EQ("abcd", test::takeText(allocTempString("ab", "cd")));
  EXPECT_EQ("", test::takeText(allocTempString("", "")));
}

TEST(LastIndexOf, FindsTheLastOccurrence) {
  EXPECT_EQ(3, lastIndexOf("a:b:c", ':'));
  EXPECT_EQ(0, lastIndexOf(":", ':'));
}

TEST(LastIndexOf, IsMinusOneWithoutOneAndForTheEmptyString) {
  EXPECT_EQ(-1, lastIndexOf("abc", ':'));
  EXPECT_EQ(-1, lastIndexOf("", ':'));
}

TEST(IndexOf, FindsTheNthOccurrenceCountingFromOne) {
  EXPECT_EQ(1, indexOf("a:b:c", ':', 1));
  EXPECT_EQ(3, indexOf("a:b:c", ':', 2));
}

TEST(IndexOf, IsMinusOneWhenThereAreFewerOccurrences) {
  EXPECT_EQ(-1, indexOf("a:b:c", ':', 3));
  EXPECT_EQ(-1, indexOf("", ':', 1));
}

TEST(IndexOf, IsMinusOneWhenNIsZeroOrNegative) {
  EXPECT_EQ(-1, indexOf("a:b:c", ':', 0));
  EXPECT_EQ(-1, indexOf("a:b:c", ':', -1));
}

TEST(IntegerToA, CutsANumberOfMoreThanSevenCharacters) {
  char text[8];
  EXPECT_EQ(8, integerToA(-1234567, text));
  EXPECT_STREQ("-123456", text);
  EXPECT_EQ(11, integerToA(INT_MIN, text));
  EXPECT_STREQ("-214748", text);
}

TEST(IntegerToA, ReturnsTheLengthOfANumberThatFits) {
  char text[8];
  EXPECT_EQ(2, integerToA(42, text));
  EXPECT_STREQ("42", text);
  EXPECT_EQ(7, integerToA(1234567, text));
  EXPECT_STREQ("1234567", text);
}

TEST(EscapeSpaces, WritesABackslashBeforeEveryBlank) {
  char text[] = "a b";
  EXPECT_EQ("a\\ b", test::takeText(escapeSpaces(text, true)));
  char blanks[] = "   ";
  EXPECT_EQ("\\ \\ \\ ", test::takeText(escapeSpaces(blanks, true)));
}

TEST(EscapeSpaces, ReturnsTheTextItselfWhenNotEscaping) {
  char text[] = "a b";
  EXPECT_EQ(text, escapeSpaces(text, false));
}

TEST(EscapeSpaces, GivesANewBlockEvenWithoutABlank) {
  char text[] = "ab";
  char* escaped = escapeSpaces(text, true);
  EXPECT_NE(text, escaped);
  EXPECT_EQ("ab", test::takeText(escaped));
}

TEST(QuoteSpaciousString, QuotesAlways) {
  EXPECT_EQ("\"ab\"", test::takeText(quoteSpaciousString("ab")));
  EXPECT_EQ("\"a b\"", test::takeText(quoteSpaciousString("a b")));
  EXPECT_EQ("\"\"", test::takeText(quoteSpaciousString("")));
  EXPECT_EQ("\"\"a\"\"", test::takeText(quoteSpaciousString("\"a\"")));
}

TEST(QuoteStringIfNecessary, ReturnsATextThatStartsWithAQuoteItselfEvenIfItDoesNotEndWithOne) {
  char text[] = "\"a b";
  EXPECT_EQ(text, quoteStringIfNecessary(text));
}

TEST(QuoteStringIfNecessary, QuotesEveryOtherText) {
  char text[] = "a\"";
  EXPECT_EQ("\"a\"\"", test::takeText(quoteStringIfNecessary(text)));
  char empty[] = "";
  EXPECT_EQ("\"\"", test::takeText(quoteStringIfNecessary(empty)));
}

TEST(PlatformStubs, SayThatThereIsNo32BitBuildAndEditNothing) {
  EXPECT_FALSE(is32Bit());
  const test::TempFolder folder;
  test::writeFile(folder / "program", "MZ program");
  editToWindowsSubsystem((folder / "program").c_str(), true);
  EXPECT_EQ("MZ program", test::readFile(folder / "program"));
}
