#include "tests/macos/run/test/guest.h"
#include "tests/support/files.h"

using Lines = std::vector<std::string>;

class Objc : public test::Guest {};

TEST_F(Objc, ClassesCategoriesStringsAndMessagesWork) {
  const Lines expected{"add 1012 2014",
                       "variables 14 2.5 counter",
                       "kind 1 2",
                       "dealloc 14",
                       "strings and 2, 13",
                       "wide Gr\u00fc\u00dfe \u20ac, 7",
                       "vowels 2",
                       "board 4 30 40",
                       "behind the superclass 1",
                       "nothing 0 0"};
  EXPECT_EQ(expected, linesOfGuest("objects.mm"));
}

TEST_F(Objc, AClassThatExistsAlreadyIsRefused) {
  std::string bytes = test::readFile(build("objects.mm"));
  // The class's own name becomes that of one of GNUstep's.
  const size_t name = bytes.find(std::string("\0Counter\0", 9));
  ASSERT_NE(std::string::npos, name);
  memcpy(bytes.data() + name + 1, "NSValue", 7);
  const std::string changed = folder_ / "changed";
  test::writeFile(changed, bytes, 0755);
  const test::Result result = runGuest({changed});
  EXPECT_EQ(126, result.status);
  EXPECT_EQ("macrun: class NSValue exists already\n", result.err);
}

TEST_F(Objc, AClassThatIsMissingIsNamedAtTheStart) {
  std::string bytes = test::readFile(build("objects.mm"));
  // The import of NSAutoreleasePool, in the table of what is bound, gets a name that nobody has.
  const std::string name = "_OBJC_CLASS_$_NSAutoreleasePool";
  const size_t import = bytes.find("\x40" + name);
  ASSERT_NE(std::string::npos, import);
  bytes[import + name.size()] = 'x';
  const std::string changed = folder_ / "changed";
  test::writeFile(changed, bytes, 0755);
  const test::Result result = runGuest({changed});
  EXPECT_EQ(126, result.status);
  EXPECT_EQ("macrun: missing class _OBJC_CLASS_$_NSAutoreleasePoox (needed by " + changed + ")\n",
            result.err);
  EXPECT_EQ("", result.out);
}

TEST_F(Objc, RecordsThatLeadOutOfTheExecutableAreRefused) {
  std::string bytes = test::readFile(build("objects.mm"));
  // The count of the first list of methods: 24 bytes for each, and more of them than there is room.
  const size_t list = bytes.find(std::string("\x18\0\0\0\x04\0\0\0", 8));
  ASSERT_NE(std::string::npos, list);
  bytes[list + 7] = '\x7F';
  const std::string changed = folder_ / "changed";
  test::writeFile(changed, bytes, 0755);
  const test::Result result = runGuest({changed});
  EXPECT_EQ(126, result.status);
  EXPECT_EQ("macrun: an Objective-C record lies outside the executable\n", result.err);
}
