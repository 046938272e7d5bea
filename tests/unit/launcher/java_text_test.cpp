#include "launcher/jvm/java_text.h"

#include <gtest/gtest.h>

#include <string>

TEST(JavaText, OfCharactersBeyondTheBasicPlaneIsTwoSurrogates) {
  // U+1F600, and the first and the last of them.
  EXPECT_EQ("a\xed\xa0\xbd\xed\xb8\x80z", javaText("a\xf0\x9f\x98\x80z"));
  EXPECT_EQ("\xed\xa0\x80\xed\xb0\x80", javaText("\xf0\x90\x80\x80"));
  EXPECT_EQ("\xed\xaf\xbf\xed\xbf\xbf", javaText("\xf4\x8f\xbf\xbf"));
}

TEST(JavaText, OfShorterCharactersStaysAsItIs) {
  for (const char* text : {"", "plain", "\xc3\xa4", "\xe2\x82\xac", "\xef\xbf\xbf"}) {
    EXPECT_EQ(text, javaText(text));
  }
}

TEST(JavaText, ThatIsNoUtf8StaysAsItIs) {
  // Latin-1, cut, too long a form, beyond the last character, a tail too few, a wrong tail.
  for (const char* text : {"caf\xe9", "\xf0\x9f\x98", "\xf0\x8f\xbf\xbf", "\xf4\x90\x80\x80",
                           "\xf5\x80\x80\x80", "\xf0\x9f\x98z", "\xf0\x28\x8c\x8c", "\x80\x80"}) {
    EXPECT_EQ(text, javaText(text));
  }
}
