#include "tools/bundle/plist.h"

#include <gtest/gtest.h>

#include <string>

#include "tools/formats/value_check.h"
#include "tools/system/input_error.h"
#include "tools/system/utf8.h"

using namespace std::string_literals;

static std::string contentOf(const tools::PlistTable& table) {
  const std::string text = tools::encodePlist(table);
  const std::string head = "<plist version=\"1.0\">\n";
  const size_t start = text.find(head) + head.size();
  return text.substr(start, text.find("</plist>") - start);
}

TEST(Plist, HasItsEntriesInTheOrderOfTheirKeysWhateverTheOrderOfTheirSetting) {
  tools::PlistTable table;
  setEntry(&table, "b", tools::plistString("2"));
  setEntry(&table, "c", tools::plistBoolean(false));
  setEntry(&table, "a", {int64_t{1}});
  EXPECT_EQ(
      "<dict>\n\t<key>a</key>\n\t<integer>1</integer>\n\t<key>b</key>\n\t<string>2</string>\n"
      "\t<key>c</key>\n\t<false/>\n</dict>\n",
      contentOf(table));
}

TEST(Plist, KeepsOnlyTheLatestValueOfAKey) {
  tools::PlistTable table;
  setEntry(&table, "a", tools::plistString("first"));
  setEntry(&table, "a", tools::plistBoolean(true));
  EXPECT_EQ("<dict>\n\t<key>a</key>\n\t<true/>\n</dict>\n", contentOf(table));
  EXPECT_EQ(nullptr, findEntry(table, "b"));
  EXPECT_TRUE(std::get<bool>(findEntry(table, "a")->content));
}

TEST(Plist, EscapesMarkupAndTheReturnThatAParserWouldChange) {
  tools::PlistTable table;
  setEntry(&table, "<k&>", tools::plistString("<\"'&amp;>\r\n\t"));
  EXPECT_EQ(
      "<dict>\n\t<key>&lt;k&amp;&gt;</key>\n\t<string>&lt;\"'&amp;amp;&gt;&#13;\n\t</string>\n"
      "</dict>\n",
      contentOf(table));
}

TEST(Plist, RefusesWhatXmlCannotHold) {
  for (const std::string& text :
       {"\0"s, "\x01"s, "\x08"s, "\x0b"s, "\x1f"s, "\uFFFE"s, "\uFFFF"s, "\xff"s}) {
    tools::PlistTable inner;
    setEntry(&inner, text, tools::plistBoolean(true));
    for (const tools::PlistValue& value :
         {tools::plistString(text), tools::plistStrings({"a", text}), tools::PlistValue{inner}}) {
      tools::PlistTable table;
      setEntry(&table, "key", value);
      EXPECT_THROW((void)tools::encodePlist(table), tools::InputError);
    }
  }
}

TEST(Plist, TakesEveryOtherCharacter) {
  for (const char* text : {"\t\n\r", " ", "\x7f", "\uFFFD", "\U0010FFFF", "中"}) {
    EXPECT_EQ("", tools::faultOfPlistText(text));
  }
}

TEST(Utf8, DecodesEachLength) {
  std::u32string points;
  EXPECT_TRUE(tools::decodeUtf8("a\u00FF\u4E2D\U0001F600", &points));
  EXPECT_EQ(U"a\u00FF\u4E2D\U0001F600", points);
}

TEST(Utf8, RefusesWhatIsNone) {
  for (const char* text :
       {"\x80", "\xc3", "\xc3g", "\xc0\x80", "\xe0\x80\x80", "\xed\xa0\x80", "\xf4\x90\x80\x80",
        "\xf0\x80\x80\x80", "\xf8\x88\x80\x80\x80", "\xff", "a\xe4\xb8"}) {
    std::u32string points;
    EXPECT_FALSE(tools::decodeUtf8(text, &points)) << text;
  }
}

TEST(UpdateUrl, HasItsHostInSmallLettersWithoutUserAndPort) {
  EXPECT_EQ("a.example", tools::hostOf("http://A.Example/x:1@y"));
  EXPECT_EQ("a.example", tools::hostOf("https://u:p@a.example:80?x"));
  EXPECT_EQ("[2001:db8::1]", tools::hostOf("http://[2001:DB8::1]:8080/"));
  EXPECT_EQ("", tools::hostOf("http://"));
}
