#include "tools/java/jar_file.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/hex_text.h"
#include "tests/support/jar_bytes.h"
#include "tests/support/object_headers.h"
#include "tools/java/inflate.h"
#include "tools/system/input_error.h"

namespace {

const char kText[] = "Manifest-Version: 1.0\r\nMain-Class: org.example.Main\r\n\r\n";
// kText with the fixed codes.
const char kFixed[] =
    "f34dcccb4c4b2d2ed10d4b2d2acecccfb35230d433e0e5f24dccccd375ce492c2eb652c82f4ad74bad48cc2dc849d5"
    "0389f372f1720100";
// A text of a dozen sections with codes of its own.
const char kDynamic[] =
    "7dd2bb0ac2500c06e0bd70dea12f509b9c4b2edd4407a72e3e419143115a2cd6c1c7179d4da64c1f3f49fe715aebd0"
    "3e9e735fdfd3ba2db53f2dd3bec3e1f61da1b95e8e5d2cd49def73dd5f430ba109cdf81fa18558511d172d9790981c"
    "98cc408c8c0ecc16c4480cd991c594cacac59164c92805c4cb64f33e2290bc3dc5920548d03bad5a9232e6e47d13c1"
    "ab01b805321ba445507fa91f";
const char kStored[] = "010b00f4ff73746f7265642074657874";

std::string bytesOf(const char* hex) {
  return test::bytesOfHex(hex);
}

std::string sections() {
  std::string text;
  for (long i = 0; i < 12; ++i) {
    text += "Name: org/example/Class" + std::to_string(i) +
            ".class\r\nSHA-256-Digest: " + std::to_string(i * i * 7919) + "\r\n\r\n";
  }
  return text;
}

template <typename Step>
std::string jarErrorOf(Step step) {
  try {
    step();
  } catch (const tools::InputError& error) {
    return error.what();
  }
  return "";
}

std::string errorOfInflating(const std::string& data, size_t most = 1000) {
  return jarErrorOf([&] { (void)tools::inflate(data, most); });
}

TEST(Inflate, ReadsBlocksOfEveryKind) {
  EXPECT_EQ(kText, tools::inflate(bytesOf(kFixed), 1000));
  EXPECT_EQ(sections(), tools::inflate(bytesOf(kDynamic), 1000));
  EXPECT_EQ("stored text", tools::inflate(bytesOf(kStored), 1000));
}

TEST(Inflate, ReadsBlocksOneAfterTheOther) {
  std::string first = bytesOf(kStored);
  first[0] = 0;  // not the last one
  EXPECT_EQ("stored text" + sections(), tools::inflate(first + bytesOf(kDynamic), 1000));
}

TEST(Inflate, OfDataThatIsCutAnywhereFails) {
  for (const char* hex : {kFixed, kDynamic, kStored}) {
    const std::string data = bytesOf(hex);
    for (size_t size = 0; size < data.size(); ++size) {
      EXPECT_EQ("the compressed data ends too early", errorOfInflating(data.substr(0, size)))
          << size << " of " << data.size();
    }
  }
}

TEST(Inflate, OfMoreThanIsAllowedFails) {
  EXPECT_EQ("", errorOfInflating(bytesOf(kDynamic), sections().size()));
  EXPECT_EQ("it has more than 688 bytes", errorOfInflating(bytesOf(kDynamic), 688));
  EXPECT_EQ("it has more than 10 bytes", errorOfInflating(bytesOf(kStored), 10));
}

TEST(Inflate, OfWrongDataFails) {
  const char kDamaged[] = "the compressed data is damaged";
  // A block of no known kind.
  EXPECT_EQ(kDamaged, errorOfInflating("\x07"));
  // A stored block with a wrong length.
  EXPECT_EQ(kDamaged, errorOfInflating(bytesOf("010b00f5ff73746f7265642074657874")));
  // A fixed block that repeats three bytes in front of the first.
  EXPECT_EQ(kDamaged, errorOfInflating(std::string("\x03\x02\x00\x00", 4)));
  // Codes of one bit for three lengths.
  EXPECT_EQ(kDamaged, errorOfInflating(std::string("\x05\x00\x92\x00\x00", 5)));
}

TEST(JarFile, HoldsTheFilesOfItsDirectory) {
  const tools::JarFile jar(test::jarOf({{"a/B.class", "class"}, {"c.txt", ""}}), "x.jar");
  EXPECT_TRUE(jar.holds("a/B.class"));
  EXPECT_TRUE(jar.holds("c.txt"));
  EXPECT_FALSE(jar.holds("a"));
  EXPECT_FALSE(jar.holds("a/B.clas"));
  EXPECT_EQ("class", jar.read("a/B.class"));
  EXPECT_EQ("", jar.read("c.txt"));
}

TEST(JarFile, MayFollowAScriptAndEndWithAComment) {
  std::string bytes = test::jarOf({{"a", "content"}});
  bytes.replace(bytes.size() - 2, 2, test::littleEndian(9, 2));
  const tools::JarFile jar("#!/bin/sh\nexec java -jar \"$0\"\n" + bytes + "a comment", "x.jar");
  EXPECT_EQ("content", jar.read("a"));
}

TEST(JarFile, OfMoreThan65535FilesHasALargerDirectory) {
  const std::string small = test::jarOf({{"a", "content"}});
  const size_t end = small.size() - 22;
  const uint64_t size = 46 + 1;
  std::string last = small.substr(end);
  last.replace(8, 12, std::string(12, '\xff'));
  const std::string head = "PK\x06\x06" + test::littleEndian(44, 8) + test::littleEndian(45, 2) +
                           test::littleEndian(45, 2) + std::string(8, '\0') +
                           test::littleEndian(1, 8) + test::littleEndian(1, 8) +
                           test::littleEndian(size, 8) + test::littleEndian(end - size, 8);
  const std::string locator =
      "PK\x06\x07" + std::string(4, '\0') + test::littleEndian(end, 8) + test::littleEndian(1, 4);
  ASSERT_EQ(56u, head.size());
  const tools::JarFile jar(small.substr(0, end) + head + locator + last, "x.jar");
  EXPECT_EQ("content", jar.read("a"));
}

TEST(JarFile, TellsOfNativeLibraries) {
  const std::string bytes = test::jarOf(
      {{"natives/liba.so", "x"}, {"liba.dylib", "x"}, {"liba.JNILIB", "x"}, {"a.so.txt", "x"}});
  EXPECT_EQ((std::vector<std::string>{"liba.JNILIB", "liba.dylib", "natives/liba.so"}),
            tools::JarFile(bytes, "x.jar").libraries());
}

TEST(JarFile, CutAnywhereIsNoJar) {
  const std::string bytes = test::jarOf({{"a", "content"}, {"b", "more"}});
  for (size_t size = 0; size < bytes.size(); ++size) {
    EXPECT_EQ("x.jar is not a jar, or is damaged; build it or copy it again",
              jarErrorOf([&] { tools::JarFile(bytes.substr(0, size), "x.jar"); }))
        << size;
  }
}

TEST(JarFile, NamesAFileThatIsDamaged) {
  const std::string good = test::jarOf({{"a", "content"}});
  std::string far = good;
  far.replace(good.find("PK\x01\x02") + 42, 4, test::littleEndian(5000, 4));
  EXPECT_EQ("a in x.jar is damaged: a record of its directory is missing",
            jarErrorOf([&] { (void)tools::JarFile(far, "x.jar").read("a"); }));
  std::string large = good;
  large.replace(good.find("PK\x01\x02") + 20, 4, test::littleEndian(5000, 4));
  EXPECT_EQ("a in x.jar is damaged: it ends too early",
            jarErrorOf([&] { (void)tools::JarFile(large, "x.jar").read("a"); }));
  std::string other = good;
  other.replace(good.find("PK\x01\x02") + 10, 2, test::littleEndian(12, 2));
  EXPECT_EQ("a in x.jar is damaged: it is compressed in another way, or too large",
            jarErrorOf([&] { (void)tools::JarFile(other, "x.jar").read("a"); }));
}

}  // namespace
