#include "tools/objects/target_fit.h"

#include <gtest/gtest.h>

#include "tests/support/files.h"
#include "tests/support/object_headers.h"
#include "tests/support/temp_folder.h"
#include "tools/system/input_error.h"

using tools::ObjectFile;
using tools::TargetFit;

namespace {

ObjectFile file(const std::string& name, const std::string& bytes) {
  return {name, tools::readObject([&](uint64_t offset, size_t size) {
            return offset >= bytes.size() ? std::string() : bytes.substr(offset, size);
          })};
}

ObjectFile linux_(const std::string& name, uint16_t machine = test::ELF_X86_64) {
  return file(name, test::elfFile(machine));
}

ObjectFile mac(const std::string& name, uint32_t processor, uint32_t version = 0x000b0000) {
  return file(name,
              test::machFile(processor, test::MACH_LIBRARY, {test::buildVersion(1, version)}));
}

ObjectFile program(const std::string& name, uint32_t processor) {
  return file(name, test::macFile(processor, test::MACH_PROGRAM));
}

ObjectFile universal(const std::string& name) {
  return file(name, test::fatFile(
                        {{test::MACH_X86_64, test::machFile(test::MACH_X86_64, test::MACH_PROGRAM,
                                                            {test::versionMin(0xa0d00)})},
                         {test::MACH_ARM64, test::macFile(test::MACH_ARM64, test::MACH_PROGRAM)}}));
}

template <typename Step>
std::string fitErrorOf(Step step) {
  try {
    step();
  } catch (const tools::InputError& error) {
    return error.what();
  }
  return "";
}

TEST(TargetFit, OfNothingLeavesAllTargets) {
  EXPECT_EQ("macos-arm64 and macos-x86_64 and linux-arm64 and linux-x86_64", TargetFit().text());
  EXPECT_EQ(0u, TargetFit().minimumSystem());
}

TEST(TargetFit, OfFilesForOneTargetIsThatTarget) {
  TargetFit fit;
  fit.requireProgram(program("launcher", test::MACH_ARM64));
  fit.require(mac("libjvm.dylib", test::MACH_ARM64));
  EXPECT_EQ("macos-arm64", fit.text());
}

TEST(TargetFit, NamesBothFilesOfAMix) {
  TargetFit fit;
  fit.requireProgram(program("bin/launcher", test::MACH_ARM64));
  EXPECT_EQ(
      "lib/libjvm.so is for linux-x86_64, but bin/launcher is for macos-arm64; a bundle needs all "
      "for one system and processor",
      fitErrorOf([&] { fit.require(linux_("lib/libjvm.so")); }));
  EXPECT_EQ(
      "lib/libjvm.dylib is for macos-x86_64, but bin/launcher is for macos-arm64; a bundle needs "
      "all for one system and processor",
      fitErrorOf([&] { fit.require(mac("lib/libjvm.dylib", test::MACH_X86_64)); }));
  EXPECT_EQ("macos-arm64", fit.text());
}

TEST(TargetFit, NamesAFileForNoTarget) {
  TargetFit fit;
  EXPECT_EQ(
      "old is for linux on ELF machine 3, but bundles are made for macos-arm64, macos-x86_64, "
      "linux-arm64, linux-x86_64; a bundle needs all for one system and processor",
      fitErrorOf([&] { fit.require(linux_("old", test::ELF_386)); }));
}

TEST(TargetFit, OfAFatFileIsForWhatTheOthersAreFor) {
  TargetFit fit;
  fit.requireProgram(universal("launcher"));
  EXPECT_EQ("macos-arm64 and macos-x86_64", fit.text());
  EXPECT_EQ("11.0", tools::systemVersionText(fit.minimumSystem()));
  fit.require(mac("libjvm.dylib", test::MACH_X86_64, 0x000a0c00));
  EXPECT_EQ("macos-x86_64", fit.text());
  EXPECT_EQ("10.13", tools::systemVersionText(fit.minimumSystem()));
  EXPECT_EQ(
      "libzip.dylib is for macos-arm64, but libjvm.dylib is for macos-x86_64; a bundle needs all "
      "for one system and processor",
      fitErrorOf([&] { fit.require(mac("libzip.dylib", test::MACH_ARM64)); }));
}

TEST(TargetFit, HoldsEverythingAgainstTheWantedTarget) {
  TargetFit fit(tools::Target{tools::System::macos, tools::Processor::arm64});
  EXPECT_EQ(
      "launcher is for macos-x86_64, but the bundle is for macos-arm64; a bundle needs all for one "
      "system and processor",
      fitErrorOf([&] { fit.requireProgram(program("launcher", test::MACH_X86_64)); }));
  fit.requireProgram(universal("launcher"));
  EXPECT_EQ("macos-arm64", fit.text());
}

TEST(TargetFit, TakesNothingButAProgramForAProgram) {
  TargetFit fit;
  EXPECT_EQ("launcher is not a program: it is neither an ELF nor a Mach-O file",
            fitErrorOf([&] { fit.requireProgram(file("launcher", "#!/bin/sh\n")); }));
  EXPECT_EQ("launcher is not a program, but another kind of file for macos-arm64",
            fitErrorOf([&] { fit.requireProgram(mac("launcher", test::MACH_ARM64)); }));
}

TEST(TargetFit, NeedsTheNewestSystemThatAFileNeeds) {
  TargetFit fit;
  fit.require(mac("a", test::MACH_ARM64, 0x000b0000));
  fit.require(mac("b", test::MACH_ARM64, 0x000d0100));
  fit.require(mac("c", test::MACH_ARM64, 0x000c0000));
  EXPECT_EQ("13.1", tools::systemVersionText(fit.minimumSystem()));
  fit.requireChoice({mac("d", test::MACH_ARM64, 0x000e0000)}, "the application");
  EXPECT_EQ("14.0", tools::systemVersionText(fit.minimumSystem()));
}

// An application's libraries, for a bundle for macOS on arm64.
class ChoiceFit : public testing::Test {
 protected:
  ChoiceFit() { fit_.requireProgram(program("launcher", test::MACH_ARM64)); }

  std::string choose(const std::vector<ObjectFile>& files) {
    return fitErrorOf([&] { fit_.requireChoice(files, "app"); });
  }

  TargetFit fit_;
};

TEST_F(ChoiceFit, OfNothingIsEnough) {
  EXPECT_EQ("", choose({}));
}

TEST_F(ChoiceFit, MayHoldFilesForOtherSystems) {
  EXPECT_EQ("", choose({linux_("app/libswt-gtk.so"), linux_("app/arm/libswt.so", test::ELF_ARM64),
                        mac("app/libswt-cocoa.dylib", test::MACH_ARM64)}));
}

TEST_F(ChoiceFit, NeedsOneForTheTarget) {
  EXPECT_EQ(
      "app/libx.so is for linux-x86_64, but launcher is for macos-arm64, and app has no such file "
      "for macos-arm64",
      choose({linux_("app/libx.so")}));
}

TEST_F(ChoiceFit, NeedsACounterpartForAnotherProcessor) {
  EXPECT_EQ(
      "app/liby.dylib is for macos-x86_64, but launcher is for macos-arm64, and app has no such "
      "file for macos-arm64",
      choose({mac("app/libx.dylib", test::MACH_ARM64), mac("app/liby.dylib", test::MACH_X86_64)}));
}

TEST_F(ChoiceFit, FindsCounterpartsByTheirNamesWithoutTheProcessor) {
  EXPECT_EQ("", choose({mac("app/intel/libx.dylib", test::MACH_X86_64),
                        mac("app/arm/libx.jnilib", test::MACH_ARM64),
                        mac("app/liby-x86_64.dylib", test::MACH_X86_64),
                        mac("app/liby-aarch64.dylib", test::MACH_ARM64),
                        mac("app/libz_macos_x64.dylib", test::MACH_X86_64),
                        mac("app/libz.dylib", test::MACH_ARM64)}));
}

TEST(TargetFit, LeavesTargetsOutThatAnApplicationIsNotFor) {
  TargetFit fit;
  fit.requireProgram(universal("launcher"));
  fit.requireChoice({mac("app/libx.dylib", test::MACH_X86_64)}, "app");
  EXPECT_EQ("macos-x86_64", fit.text());
  EXPECT_EQ(
      "libjvm.dylib is for macos-arm64, but app/libx.dylib is for macos-x86_64; a bundle needs all "
      "for one system and processor",
      fitErrorOf([&] { fit.require(mac("libjvm.dylib", test::MACH_ARM64)); }));
}

TEST(ObjectsIn, AreProgramsAndLibrariesAndNoOtherFiles) {
  const test::TempFolder folder;
  test::writeFile(folder / "bin/java", test::elfFile(test::ELF_X86_64, test::ELF_PROGRAM));
  test::writeFile(folder / "lib/a.o", test::elfFile(test::ELF_X86_64, test::ELF_OBJECT));
  test::writeFile(folder / "lib/liba.so", test::elfFile(test::ELF_X86_64));
  test::writeFile(folder / "release", "JAVA_VERSION=\"17\"\n");
  const std::vector<ObjectFile> found = tools::objectsIn(folder.path(), "shown");
  ASSERT_EQ(2u, found.size());
  EXPECT_EQ("shown/bin/java", found[0].name);
  EXPECT_EQ("shown/lib/liba.so", found[1].name);
}

TEST(ObjectsIn, OfADamagedLibraryNamesIt) {
  const test::TempFolder folder;
  test::writeFile(folder / "liba.so", test::elfFile(test::ELF_X86_64).substr(0, 10));
  EXPECT_EQ(folder / "liba.so is damaged: it ends within its header",
            fitErrorOf([&] { (void)tools::objectsIn(folder.path(), "shown"); }));
}

}  // namespace
