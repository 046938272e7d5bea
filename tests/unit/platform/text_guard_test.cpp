#include "platform/gnustep/text_guard.h"

#include <gtest/gtest.h>

#include <string>

static std::string readable(std::string word) {
  char* words[] = {word.data(), nullptr};
  return allocReadableWords(words)[0];
}

TEST(ReadableWords, KeepUtf8AsItIs) {
  for (const char* word : {"", "plain", "\xC3\xA9", "\xE6\x97\xA5", "\xEF\xBF\xBF",
                           "\xF0\x9F\x98\x80", "\xF4\x8F\xBF\xBF"}) {
    EXPECT_EQ(word, readable(word));
  }
}

TEST(ReadableWords, HaveAQuestionMarkForEveryByteOutsideACharacter) {
  EXPECT_EQ("a??.", readable("a\xFF\xFE."));
  EXPECT_EQ("?", readable("\x80"));
  EXPECT_EQ("?", readable("\xC3"));
  EXPECT_EQ("??", readable("\xE6\x97"));
  EXPECT_EQ("???.", readable("\xF0\x9F\x98."));
}

TEST(ReadableWords, TakeNoOverlongSurrogateOrTooLargeCharacter) {
  EXPECT_EQ("??", readable("\xC0\x80"));
  EXPECT_EQ("???", readable("\xE0\x80\x80"));
  EXPECT_EQ("????", readable("\xF0\x80\x80\x80"));
  EXPECT_EQ("???", readable("\xED\xA0\x80"));
  EXPECT_EQ("????", readable("\xF4\x90\x80\x80"));
  EXPECT_EQ("????", readable("\xF5\x80\x80\x80"));
}

TEST(ReadableWords, AreAsManyAndEndWithNull) {
  char one[] = "one";
  char two[] = "two";
  char* words[] = {one, two, nullptr};
  char** copies = allocReadableWords(words);
  EXPECT_STREQ("one", copies[0]);
  EXPECT_STREQ("two", copies[1]);
  EXPECT_EQ(nullptr, copies[2]);
  EXPECT_NE(one, copies[0]);
}
