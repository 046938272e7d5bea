#include "tools/apple/code_signature.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/support/files.h"
#include "tests/support/mach_file.h"
#include "tests/support/temp_folder.h"

namespace {

std::string signedLibrary() {
  test::MachSignature signature;
  signature.team = "TEAM123456";
  signature.entitlements = "<plist/>";
  signature.certificates = "a signature";
  return test::signedMachFile(test::MACH_ARM64, test::MACH_LIBRARY, "content", signature);
}

std::string fatFile(const std::string& first, const std::string& second) {
  const auto number = [](size_t value) { return test::big32(static_cast<uint32_t>(value)); };
  std::string head = test::big32(0xCAFEBABE) + test::big32(2);
  head += number(7) + number(3) + number(4096) + number(first.size()) + number(12);
  head += number(7) + number(3) + number(4096 + first.size()) + number(second.size()) + number(12);
  head.resize(4096);
  return head + first + second;
}

TEST(CodeSignature, OfAWholeFileIsReadWithoutFault) {
  const auto file = tools::readMachFile(signedLibrary());
  ASSERT_TRUE(file);
  EXPECT_FALSE(file->isProgram);
  EXPECT_TRUE(file->isSigned());
  ASSERT_EQ(1u, file->parts.size());
  const tools::CodeSignature& part = file->parts[0];
  EXPECT_EQ("org.example.code", part.identifier);
  EXPECT_EQ("TEAM123456", part.team);
  EXPECT_EQ("<plist/>", part.entitlements);
  EXPECT_TRUE(part.hasCertificate);
  EXPECT_TRUE(part.isHardened);
  EXPECT_EQ(std::vector<std::string>{}, part.faults);
}

TEST(CodeSignature, OfAnAdHocSignedProgramHasNoCertificate) {
  test::MachSignature signature;
  signature.flags = 2;
  const auto file = tools::readMachFile(
      test::signedMachFile(test::MACH_X86_64, test::MACH_PROGRAM, "", signature));
  ASSERT_TRUE(file);
  EXPECT_TRUE(file->isProgram);
  EXPECT_TRUE(file->isSigned());
  EXPECT_FALSE(file->parts[0].hasCertificate);
  EXPECT_FALSE(file->parts[0].isHardened);
  EXPECT_EQ("", file->parts[0].team);
  EXPECT_EQ(std::vector<std::string>{}, file->parts[0].faults);
}

TEST(CodeSignature, IsMissedInAFileWithoutOne) {
  const auto file =
      tools::readMachFile(test::wholeMachFile(test::MACH_ARM64, test::MACH_PROGRAM, "content"));
  ASSERT_TRUE(file);
  EXPECT_FALSE(file->isSigned());
  EXPECT_EQ(std::vector<std::string>{}, file->parts[0].faults);
}

TEST(CodeSignature, NoticesAChangeOfEachPage) {
  const std::string whole = signedLibrary();
  for (const size_t place : {200u, 4096u, 8191u, 12287u}) {
    std::string changed = whole;
    changed[place] ^= 1;
    const auto file = tools::readMachFile(changed);
    ASSERT_TRUE(file);
    EXPECT_EQ(
        std::vector<std::string>{"was changed after it was signed: 1 of its 3 pages are not as "
                                 "signed"},
        file->parts[0].faults)
        << place;
  }
}

TEST(CodeSignature, NoticesAChangeOfTheEntitlements) {
  std::string changed = signedLibrary();
  changed[changed.find("<plist/>") + 1] = 'P';
  const auto file = tools::readMachFile(changed);
  ASSERT_TRUE(file);
  EXPECT_EQ(std::vector<std::string>{"has a signature that does not cover its record 5"},
            file->parts[0].faults);
}

TEST(CodeSignature, IsReadForEachProcessorOfAFatFile) {
  std::string second = signedLibrary();
  second[5000] ^= 1;
  const auto file = tools::readMachFile(fatFile(signedLibrary(), second));
  ASSERT_TRUE(file);
  ASSERT_EQ(2u, file->parts.size());
  EXPECT_EQ(0u, file->parts[0].faults.size());
  EXPECT_EQ(1u, file->parts[1].faults.size());
  const auto half = tools::readMachFile(
      fatFile(signedLibrary(), test::wholeMachFile(test::MACH_ARM64, test::MACH_LIBRARY, "")));
  ASSERT_TRUE(half);
  EXPECT_FALSE(half->isSigned());
}

TEST(CodeSignature, IsNotLookedForInOtherFiles) {
  EXPECT_FALSE(tools::readMachFile(""));
  EXPECT_FALSE(tools::readMachFile("#!/bin/sh\n"));
  EXPECT_FALSE(
      tools::readMachFile("\x7f"
                          "ELF and more"));
  // A Java class of version 61.
  EXPECT_FALSE(tools::readMachFile(test::big32(0xCAFEBABE) + test::big32(61) + "more"));
}

TEST(CodeSignature, OfAFileThatBreaksOffAnywhereHasFaults) {
  const std::string whole = signedLibrary();
  for (size_t size = 4; size < whole.size(); size += size < 600 || size > 12200 ? 1 : 97) {
    const auto file = tools::readMachFile(whole.substr(0, size));
    ASSERT_TRUE(file) << size;
    ASSERT_NE(0u, file->parts[0].faults.size()) << size;
  }
}

TEST(CodeSignature, ThatCoversNotAllOfTheFileHasFaults) {
  const auto longer = tools::readMachFile(signedLibrary() + "more");
  ASSERT_TRUE(longer);
  EXPECT_EQ(std::vector<std::string>{"continues after its signature, which does not cover that"},
            longer->parts[0].faults);
  std::string early = signedLibrary();
  const size_t command = early.find(test::little32(0x1D) + test::little32(16));
  early.replace(command + 8, 4, test::little32(0));
  const auto none = tools::readMachFile(early);
  ASSERT_TRUE(none);
  EXPECT_EQ(std::vector<std::string>{"has a signature that covers nothing"}, none->parts[0].faults);
}

TEST(CodeSignature, WithAHugeCountOfRecordsIsRefused) {
  std::string changed = signedLibrary();
  const size_t signature = changed.find(test::big32(0xFADE0CC0));
  changed.replace(signature + 8, 4, test::big32(0x7FFFFFFF));
  const auto file = tools::readMachFile(changed);
  ASSERT_TRUE(file);
  EXPECT_EQ("has a signature that cannot be read", file->parts[0].faults.at(0));
}

TEST(IsMachFile, LooksAtTheFirstBytesAlone) {
  const test::TempFolder folder;
  test::writeFile(folder / "code", signedLibrary());
  test::writeFile(folder / "short", test::little32(0xFEEDFACF));
  test::writeFile(folder / "text", "text");
  test::writeFile(folder / "empty", "");
  test::writeFile(folder / "Main.class", test::big32(0xCAFEBABE) + test::big32(52));
  EXPECT_TRUE(tools::isMachFile(folder / "code"));
  EXPECT_TRUE(tools::isMachFile(folder / "short"));
  EXPECT_FALSE(tools::isMachFile(folder / "text"));
  EXPECT_FALSE(tools::isMachFile(folder / "empty"));
  EXPECT_FALSE(tools::isMachFile(folder / "Main.class"));
}

}  // namespace
