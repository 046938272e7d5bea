#include "tools/formats/strict_fields.h"

#include <gtest/gtest.h>

#include <climits>
#include <string>
#include "tests/support/files.h"

#include "support/owned.h"
#include "tests/support/temp_folder.h"
#include "tools/system/input_error.h"

using namespace std::string_literals;

namespace {

template <typename Action>
std::string fieldsErrorOf(const Action& action) {
  try {
    action();
  } catch (const tools::InputError& error) {
    return error.what();
  }
  return "no error";
}

}  // namespace

TEST(StrictFields, ReadTextsAndNumbersOneAfterTheOther) {
  const std::string bytes =
      "skip\0a text\0\0"
      "42\0"
      "-7\0"s;
  tools::StrictFields fields(bytes, "the file", "", 5);
  EXPECT_EQ("a text", fields.text("first", 8));
  EXPECT_EQ("", fields.text("second", 2));
  EXPECT_EQ(42, fields.number("third"));
  EXPECT_FALSE(fields.isAtEnd());
  EXPECT_EQ(16, fields.position());
  EXPECT_EQ(-7, fields.signedNumber("fourth"));
  EXPECT_TRUE(fields.isAtEnd());
}

TEST(StrictFields, FromAStreamReadTheSame) {
  const test::TempFolder folder;
  test::writeFile(folder / "f",
                  "xx\0"
                  "12\0y"s);
  const Stream stream(fopen((folder / "f").c_str(), "rb"));
  tools::StrictFields fields(stream.get(), "f", "make it again");
  EXPECT_EQ("xx", fields.text("first", 4));
  EXPECT_EQ(12, fields.number("second"));
  EXPECT_EQ(6, fields.position());
  EXPECT_FALSE(fields.isAtEnd());
  EXPECT_EQ(6, fields.position());
  EXPECT_EQ("f is damaged at byte 6: it ends inside third; make it again",
            fieldsErrorOf([&] { fields.text("third", 4); }));
  EXPECT_TRUE(fields.isAtEnd());
}

TEST(StrictFields, TakeAFieldAsLongAsTheProductReadsItAndNoLongerOne) {
  const std::string fits(1022, 'x');
  EXPECT_EQ(fits, tools::StrictFields(fits + "\0"s, "f", "").text("it", 1024));
  const std::string longer = fits + "x\0"s;
  EXPECT_EQ("f is damaged at byte 0: it is longer than the 1022 bytes that are read of it",
            fieldsErrorOf([&] { tools::StrictFields(longer, "f", "").text("it", 1024); }));
  EXPECT_EQ(1023u, tools::StrictFields(longer, "f", "").text("it", INT_MAX).size());
}

TEST(StrictFields, RefuseNumbersThatTheProductWouldReadOtherwise) {
  for (const char* text : {"", "-1", "+1", " 1", "1 ", "0x1", "1.0", "1234567890123456789"}) {
    const std::string bytes = text + "\0"s;
    EXPECT_EQ("f is damaged at byte 0: n is '"s + text + "', expected a decimal number",
              fieldsErrorOf([&] { tools::StrictFields(bytes, "f", "").number("n"); }));
  }
  for (const char* text : {"", "-", "--1", "- 1"}) {
    const std::string bytes = text + "\0"s;
    EXPECT_EQ("f is damaged at byte 0: n is '"s + text + "', expected a decimal number",
              fieldsErrorOf([&] { tools::StrictFields(bytes, "f", "").signedNumber("n"); }));
  }
  EXPECT_EQ(123456789012345678, tools::StrictFields("123456789012345678\0"s, "f", "").number("n"));
}
