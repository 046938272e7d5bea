#include "tools/objects/object_reader.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "tests/support/files.h"
#include "tests/support/object_headers.h"
#include "tests/support/temp_folder.h"
#include "tools/system/input_error.h"

using tools::ObjectPart;
using tools::Processor;
using tools::System;
using tools::Target;

namespace {

using Parts = std::vector<ObjectPart>;

Parts read(const std::string& bytes) {
  return tools::readObject([&](uint64_t offset, size_t size) {
    return offset >= bytes.size() ? std::string() : bytes.substr(offset, size);
  });
}

ObjectPart readOne(const std::string& bytes) {
  const Parts parts = read(bytes);
  EXPECT_EQ(1u, parts.size());
  return parts.empty() ? ObjectPart{} : parts[0];
}

// The error about the bytes; empty for none.
std::string objectErrorOf(const std::string& bytes) {
  try {
    EXPECT_TRUE(read(bytes).empty());
  } catch (const tools::InputError& error) {
    return error.what();
  }
  return "";
}

TEST(ElfFile, IsForTheProcessorOfItsMachine) {
  const ObjectPart intel = readOne(test::elfFile(test::ELF_X86_64));
  EXPECT_EQ((Target{System::linux_, Processor::x86_64}), intel.target);
  EXPECT_EQ("linux-x86_64", intel.text);
  EXPECT_EQ(0u, intel.minimumSystem);
  EXPECT_EQ((Target{System::linux_, Processor::arm64}),
            readOne(test::elfFile(test::ELF_ARM64)).target);
}

TEST(ElfFile, OfAnotherMachineOrWidthIsForNoTarget) {
  const ObjectPart old = readOne(test::elfFile(test::ELF_386));
  EXPECT_FALSE(old.target);
  EXPECT_EQ("linux on ELF machine 3", old.text);
  std::string narrow = test::elfFile(test::ELF_X86_64);
  narrow[4] = 1;
  EXPECT_FALSE(readOne(narrow).target);
  EXPECT_EQ("linux on ELF machine 62 with 32 bits", readOne(narrow).text);
}

TEST(ElfFile, OfAnotherSystemIsForNoTarget) {
  std::string bsd = test::elfFile(test::ELF_X86_64);
  bsd[7] = 9;
  EXPECT_FALSE(readOne(bsd).target);
  EXPECT_EQ("another system on ELF machine 62", readOne(bsd).text);
  bsd[7] = 3;
  EXPECT_EQ("linux-x86_64", readOne(bsd).text);
}

TEST(ElfFile, WithItsHighestBytesFirstIsReadAsSuch) {
  std::string power = test::elfFile(0, 0);
  power[5] = 2;
  power.replace(16, 4, test::bigEndian(test::ELF_SHARED, 2) + test::bigEndian(22, 2));
  const ObjectPart part = readOne(power);
  EXPECT_EQ("linux on ELF machine 22", part.text);
  EXPECT_TRUE(part.isLibrary);
}

TEST(ElfFile, IsAProgramALibraryOrBoth) {
  const ObjectPart program = readOne(test::elfFile(test::ELF_X86_64, test::ELF_PROGRAM));
  EXPECT_TRUE(program.isProgram && !program.isLibrary);
  const ObjectPart shared = readOne(test::elfFile(test::ELF_X86_64, test::ELF_SHARED));
  EXPECT_TRUE(shared.isProgram && shared.isLibrary);
  const ObjectPart object = readOne(test::elfFile(test::ELF_X86_64, test::ELF_OBJECT));
  EXPECT_FALSE(object.isProgram || object.isLibrary);
}

TEST(MachFile, IsForItsProcessorAndOldestSystem) {
  const ObjectPart arm = readOne(test::macFile(test::MACH_ARM64));
  EXPECT_EQ((Target{System::macos, Processor::arm64}), arm.target);
  EXPECT_EQ("macos-arm64", arm.text);
  EXPECT_EQ("11.0", tools::systemVersionText(arm.minimumSystem));
  const ObjectPart intel = readOne(
      test::machFile(test::MACH_X86_64, test::MACH_LIBRARY, {test::versionMin(0x000a0d06)}));
  EXPECT_EQ("macos-x86_64", intel.text);
  EXPECT_EQ("10.13.6", tools::systemVersionText(intel.minimumSystem));
}

TEST(MachFile, WithoutAVersionIsForAnySystem) {
  const ObjectPart part = readOne(test::machFile(test::MACH_X86_64, test::MACH_PROGRAM, {}));
  EXPECT_EQ("macos-x86_64", part.text);
  EXPECT_EQ("", tools::systemVersionText(part.minimumSystem));
}

TEST(MachFile, FindsTheVersionBehindOtherCommands) {
  const std::string other =
      test::littleEndian(0x19, 4) + test::littleEndian(72, 4) + std::string(64, 'x');
  const ObjectPart part = readOne(test::machFile(test::MACH_ARM64, test::MACH_BUNDLE,
                                                 {other, test::buildVersion(1, 0x000c0300)}));
  EXPECT_EQ("12.3", tools::systemVersionText(part.minimumSystem));
}

TEST(MachFile, OfAnotherPlatformProcessorOrSubtypeIsForNoTarget) {
  const ObjectPart phone = readOne(
      test::machFile(test::MACH_ARM64, test::MACH_LIBRARY, {test::buildVersion(2, 0x000e0000)}));
  EXPECT_FALSE(phone.target);
  EXPECT_EQ("Apple's platform 2 on arm64", phone.text);
  EXPECT_EQ(0u, phone.minimumSystem);
  std::string older = test::versionMin(0x00080000);
  older[0] = 0x25;
  EXPECT_FALSE(readOne(test::machFile(test::MACH_ARM64, test::MACH_LIBRARY, {older})).target);
  const ObjectPart signedPointers =
      readOne(test::machFile(test::MACH_ARM64, test::MACH_LIBRARY, {}, 0x80000002));
  EXPECT_FALSE(signedPointers.target);
  EXPECT_EQ("macos on arm64 with another subtype", signedPointers.text);
  const ObjectPart unknown = readOne(test::machFile(18, test::MACH_LIBRARY, {}));
  EXPECT_EQ("macos on Mach-O processor 18", unknown.text);
}

TEST(MachFile, WithThirtyTwoBitsOrHighestBytesFirstIsForNoTarget) {
  std::string narrow = test::machFile(test::MACH_386, test::MACH_PROGRAM, {});
  narrow[0] = '\xce';
  EXPECT_EQ("macos on Mach-O processor 7", readOne(narrow.substr(0, 28)).text);
  std::string power = test::bigEndian(0xfeedface, 4) + test::bigEndian(18, 4) +
                      test::bigEndian(0, 4) + test::bigEndian(test::MACH_PROGRAM, 4) +
                      std::string(12, '\0');
  EXPECT_FALSE(readOne(power).target);
  EXPECT_TRUE(readOne(power).isProgram);
}

TEST(MachFile, IsAProgramALibraryOrNeither) {
  const auto read = [](uint32_t type) { return readOne(test::macFile(test::MACH_ARM64, type)); };
  EXPECT_TRUE(read(test::MACH_PROGRAM).isProgram && !read(test::MACH_PROGRAM).isLibrary);
  EXPECT_TRUE(!read(test::MACH_LIBRARY).isProgram && read(test::MACH_LIBRARY).isLibrary);
  EXPECT_TRUE(!read(test::MACH_BUNDLE).isProgram && read(test::MACH_BUNDLE).isLibrary);
  EXPECT_TRUE(!read(test::MACH_OBJECT).isProgram && !read(test::MACH_OBJECT).isLibrary);
}

TEST(MachFile, WithWrongSizesIsDamaged) {
  const std::string good = test::buildVersion(1, 0x000b0000);
  const auto commandOf = [&](uint32_t length) {
    return good.substr(0, 4) + test::littleEndian(length, 4) + good.substr(8);
  };
  for (const uint32_t length : {0u, 7u, 25u, 0xffffffffu}) {
    EXPECT_EQ(
        "load command 1 has a wrong size",
        objectErrorOf(test::machFile(test::MACH_ARM64, test::MACH_LIBRARY, {commandOf(length)})));
  }
  EXPECT_EQ("a load command is too short",
            objectErrorOf(test::machFile(test::MACH_ARM64, test::MACH_LIBRARY,
                                         {commandOf(8).substr(0, 8), test::versionMin(1)})));
  std::string large = test::macFile(test::MACH_ARM64);
  large.replace(20, 4, test::littleEndian(0x7fffffff, 4));
  EXPECT_EQ("its load commands are said to have 2147483647 bytes", objectErrorOf(large));
  std::string many = test::macFile(test::MACH_ARM64);
  many.replace(16, 4, test::littleEndian(0xffffffff, 4));
  EXPECT_EQ("it ends within its header", objectErrorOf(many));
}

const std::vector<test::FatPart> kBoth = {
    {test::MACH_X86_64,
     test::machFile(test::MACH_X86_64, test::MACH_PROGRAM, {test::versionMin(0x000a0d00)})},
    {test::MACH_ARM64, test::macFile(test::MACH_ARM64, test::MACH_PROGRAM)}};

TEST(FatFile, IsForEachOfItsProcessors) {
  for (const bool isWide : {false, true}) {
    const Parts parts = read(test::fatFile(kBoth, isWide));
    ASSERT_EQ(2u, parts.size());
    EXPECT_EQ("macos-x86_64", parts[0].text);
    EXPECT_EQ("10.13", tools::systemVersionText(parts[0].minimumSystem));
    EXPECT_EQ("macos-arm64", parts[1].text);
    EXPECT_EQ("11.0", tools::systemVersionText(parts[1].minimumSystem));
    EXPECT_TRUE(parts[0].isProgram && parts[1].isProgram);
  }
}

TEST(FatFile, OfArchivesHasNothingToExecute) {
  EXPECT_EQ("", objectErrorOf(test::fatFile({{test::MACH_ARM64, "!<arch>\n and more"}})));
}

TEST(FatFile, WithAPartThatIsNotThereOrAnotherOneIsDamaged) {
  std::string far = test::fatFile(kBoth);
  far.replace(8 + 8, 4, test::bigEndian(0xfffffff0, 4));
  EXPECT_EQ("it ends within one of its parts", objectErrorOf(far));
  std::string wide = test::fatFile(kBoth, true);
  wide.replace(8 + 8, 8, std::string(8, '\xff'));
  EXPECT_EQ("it ends within one of its parts", objectErrorOf(wide));
  std::string empty = test::fatFile(kBoth);
  empty.replace(8 + 12, 4, test::bigEndian(0, 4));
  EXPECT_EQ("it ends within one of its parts", objectErrorOf(empty));
  std::string exchanged = test::fatFile(kBoth);
  exchanged.replace(8, 4, test::bigEndian(test::MACH_ARM64, 4));
  EXPECT_EQ("its list names another processor than its part for macos-x86_64",
            objectErrorOf(exchanged));
  EXPECT_EQ("it is said to have 0 parts", objectErrorOf(test::fatFile({})));
  EXPECT_EQ("it is said to have 45 parts",
            objectErrorOf(test::bigEndian(0xcafebabf, 4) + test::bigEndian(45, 4)));
}

TEST(Object, CutAnywhereInItsHeaderIsDamaged) {
  const std::vector<std::string> whole = {test::elfFile(test::ELF_X86_64).substr(0, 20),
                                          test::macFile(test::MACH_ARM64), test::fatFile(kBoth),
                                          test::fatFile(kBoth, true)};
  for (const std::string& bytes : whole) {
    EXPECT_FALSE(read(bytes).empty());
    for (size_t size = 4; size < bytes.size(); ++size) {
      EXPECT_NE("", objectErrorOf(bytes.substr(0, size))) << size << " of " << bytes.size();
    }
    for (size_t size = 0; size < 4; ++size) {
      EXPECT_EQ("", objectErrorOf(bytes.substr(0, size)));
    }
  }
}

TEST(Object, IsNotAJavaClassOrAnyOtherFile) {
  for (const int version : {45, 52, 61, 69}) {
    EXPECT_EQ("", objectErrorOf(test::bigEndian(0xcafebabe, 4) + test::bigEndian(version, 4)));
  }
  for (const char* text : {"", "#!/bin/sh\n", "MZ and more", "PK\x03\x04", "!<arch>\n"}) {
    EXPECT_EQ("", objectErrorOf(text)) << text;
  }
}

TEST(Object, OfThisTestIsAProgramForThisMachine) {
  const Parts parts = tools::readObjectFile("/proc/self/exe");
  ASSERT_EQ(1u, parts.size());
  EXPECT_EQ(tools::thisMachine(), parts[0].target);
  EXPECT_TRUE(parts[0].isProgram);
}

TEST(Object, IsFoundInsideAFileAndItsDamageNamed) {
  const test::TempFolder folder;
  const std::string library = test::macFile(test::MACH_ARM64);
  test::writeFile(folder / "file", "before" + library + "behind");
  EXPECT_EQ(1u, tools::readObjectIn(folder / "file", 6, library.size(), "lib/a.dylib").size());
  EXPECT_TRUE(tools::readObjectFile(folder / "file").empty());
  try {
    (void)tools::readObjectIn(folder / "file", 6, library.size() - 1, "lib/a.dylib");
    FAIL() << "the cut library was read";
  } catch (const tools::InputError& error) {
    EXPECT_STREQ("lib/a.dylib is damaged: it ends within its load commands", error.what());
  }
}

}  // namespace
