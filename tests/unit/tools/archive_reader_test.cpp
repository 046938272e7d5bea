#include "tools/formats/archive_reader.h"

#include <gtest/gtest.h>

#include <memory>

#include "tests/support/files.h"
#include "tests/support/temp_folder.h"
#include "tests/support/test_keys.h"
#include "tools/formats/archive_writer.h"
#include "tools/system/input_error.h"

using test::field;

class ArchiveReader : public testing::Test {
 protected:
  tools::ArchiveListing read(const std::string& bytes) {
    test::writeFile(path(), bytes);
    return tools::readArchive(path(), "the.p2");
  }

  std::string errorOf(const std::string& bytes) {
    try {
      read(bytes);
    } catch (const tools::InputError& error) {
      return error.what();
    }
    return "";
  }

  // The message of the signature check with the test key `key`.
  std::string signatureError(const std::string& bytes, const std::string& key = "first") {
    const std::string der = tools::SigningKey::read(test::keyFile(key)).publicKeyDer();
    const auto* start = reinterpret_cast<const unsigned char*>(der.data());
    const std::unique_ptr<Rsa_key, decltype(&freePublicKey)> publicKey(
        loadDEREncodedPublicKey(start, static_cast<int>(der.size())), freePublicKey);
    try {
      tools::checkSignature(path(), "the.p2", read(bytes), publicKey.get());
    } catch (const tools::InputError& error) {
      return error.what();
    }
    return "";
  }

  std::string signedArchive() {
    test::writeFile(folder_ / "source/f", "content");
    const auto key = tools::SigningKey::read(test::keyFile("first"));
    tools::ArchiveContent content;
    content.folder = folder_ / "source";
    tools::writeArchive(content, path(), &key);
    return test::readFile(path());
  }

  std::string path() const { return folder_ / "archive.p2"; }

  test::TempFolder folder_;
};

TEST_F(ArchiveReader, ListsEveryKindOfEntry) {
  const auto listing =
      read(field("1") + field("d") + field("0") + field("d/f") + field("3") + "abc" + field("2") +
           field("j") + field("1") + "x" + field("0") + field("qvArcSpBlock_X") + field("0"));
  ASSERT_EQ(4u, listing.entries.size());
  EXPECT_EQ(tools::EntryKind::folder, listing.entries[0].kind);
  EXPECT_EQ("d/f", listing.entries[1].path);
  EXPECT_EQ(3, listing.entries[1].length);
  EXPECT_EQ(tools::EntryKind::pack200, listing.entries[2].kind);
  EXPECT_EQ("qvArcSpBlock_X", listing.entries[3].path);
  EXPECT_FALSE(listing.isSigned);
}

TEST_F(ArchiveReader, SaysWhereAnArchiveIsDamaged) {
  const std::string good = field("1") + field("d");
  EXPECT_EQ("the.p2 is damaged at byte 4: it ends inside an entry's type; make it again",
            errorOf(good + "0"));
  EXPECT_EQ(
      "the.p2 is damaged at byte 4: an entry's type is 'x', expected 0, 1 or 2; make it again",
      errorOf(good + field("x")));
  EXPECT_EQ(
      "the.p2 is damaged at byte 4: the entry '../f' is refused, path leads out of the "
      "destination; make it again",
      errorOf(good + field("0") + field("../f") + field("0")));
  EXPECT_EQ(
      "the.p2 is damaged at byte 8: an entry's length is '-1', expected a decimal number; "
      "make it again",
      errorOf(good + field("0") + field("f") + field("-1")));
  EXPECT_EQ("the.p2 is damaged at byte 11: it ends inside the data of 'f'; make it again",
            errorOf(good + field("0") + field("f") + field("10") + "123456789"));
  EXPECT_EQ(
      "the.p2 is damaged at byte 6: an entry's path is longer than the 1022 bytes that are read of "
      "it; "
      "make it again",
      errorOf(good + field("0") + std::string(100000, 'p')));
}

TEST_F(ArchiveReader, RefusesBytesBehindTheSignature) {
  const std::string bytes = signedArchive();
  EXPECT_EQ("the.p2 is damaged at byte " + std::to_string(bytes.size()) +
                ": bytes follow the signature record; make it again",
            errorOf(bytes + "x"));
}

TEST_F(ArchiveReader, AcceptsTheSignatureOfTheRightKeyAlone) {
  const std::string bytes = signedArchive();
  EXPECT_EQ("", signatureError(bytes));
  EXPECT_EQ("the.p2 was changed after it was signed, or signed with another key",
            signatureError(bytes, "second"));
}

TEST_F(ArchiveReader, SaysWhyASignatureIsNotRight) {
  std::string bytes = signedArchive();
  const size_t record = field("0").size() + field("f").size() + field("7").size() + 7;
  EXPECT_EQ("the.p2 is not signed; make it with --key", signatureError(bytes.substr(0, record)));
  EXPECT_EQ(
      "the.p2 is damaged: its signature record is at byte 17 but claims to cover 13 bytes; "
      "make it again",
      signatureError(field("1") + field("e") + bytes));
  std::string changed = bytes;
  changed[record - 1] ^= 1;
  EXPECT_EQ("the.p2 was changed after it was signed, or signed with another key",
            signatureError(changed));
  changed = bytes;
  changed.at(bytes.find("516")) = '6';
  EXPECT_EQ("the.p2 has a signature record that is not in canonical form; make it again",
            signatureError(changed));
}

TEST_F(ArchiveReader, CutShortAnywhereIsAnErrorOrUnsigned) {
  const std::string bytes = signedArchive();
  for (size_t length = 0; length < bytes.size(); ++length) {
    EXPECT_NE("", signatureError(bytes.substr(0, length))) << length;
  }
}
