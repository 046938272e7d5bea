#include <gtest/gtest.h>

#include <string>

#include "tests/blackbox/pack/small_project.h"
#include "tests/support/files.h"
#include "tests/support/mach_file.h"
#include "tests/support/object_headers.h"

// Programs and libraries for different systems and processors, in one bundle.

namespace {

const std::string kFitBundle = test::bundleIn("dist", "offline");
const std::string kExecutable = kFitBundle + "/Contents/MacOS/Small App";

// They are signed: `verify` refuses code for arm64 that is not.
std::string macProgram(uint32_t processor = test::MACH_ARM64) {
  return test::signedMachFile(processor, test::MACH_PROGRAM, "a program", {});
}

std::string macLibrary(uint32_t processor = test::MACH_ARM64) {
  return test::signedMachFile(processor, test::MACH_LIBRARY, "a library", {});
}

std::string universalProgram() {
  return test::fatFile({{test::MACH_X86_64, macProgram(test::MACH_X86_64)},
                        {test::MACH_ARM64, macProgram(test::MACH_ARM64)}});
}

class PackFit : public testing::Test {
 protected:
  void write(const std::string& path, const std::string& bytes) {
    test::writeFile(project_ / path, bytes, 0755);
  }

  void useExecutables(const std::string& bytes) {
    for (const char* name : {"bin/launcher", "bin/extractor", "bin/lzma64"}) {
      write(name, bytes);
    }
  }

  void expectRefusal(const std::string& message, test::Place place = test::Place::here()) {
    project_.build().fails(message, place).leavesNo("dist/site", place);
  }

  // Builds, and expects that `verify` says `fact` of what is made for the target.
  void expectFact(const std::string& fact, const std::string& target,
                  const std::vector<std::string>& words = {}) {
    test::writeFile(project_ / "quorvane.toml", project_.text);
    std::vector<std::string> all = {"build", "--executables", "bin"};
    all.insert(all.end(), words.begin(), words.end());
    project_.pack(all).ends(0);
    project_.pack({"verify", "dist/Small App-3-" + target + ".zip"}).ends(0).mentions(fact + "\n");
  }

  void expectProblem(const std::string& problem, const std::vector<std::string>& words = {},
                     test::Place place = test::Place::here()) {
    std::vector<std::string> all = {"verify", kFitBundle};
    all.insert(all.end(), words.begin(), words.end());
    project_.pack(all).fails(kFitBundle + " would not work:\n  " + problem, place);
  }

  test::SmallProject project_;
};

TEST_F(PackFit, RefusesALinuxRuntimeInAMacosBundle) {
  useExecutables(macProgram());
  write("runtime/lib/server/libjvm.so", test::elfFile(test::ELF_X86_64));
  expectRefusal(
      "runtime/lib/server/libjvm.so is for linux-x86_64, but bin/launcher is for macos-arm64; a "
      "bundle needs all for one system and processor");
}

TEST_F(PackFit, RefusesARuntimeForAnotherProcessor) {
  useExecutables(macProgram(test::MACH_X86_64));
  write("runtime/lib/server/libjvm.dylib", macLibrary());
  expectRefusal(
      "runtime/lib/server/libjvm.dylib is for macos-arm64, but bin/launcher is for macos-x86_64; a "
      "bundle needs all for one system and processor");
}

TEST_F(PackFit, RefusesExecutablesForDifferentSystems) {
  write("bin/extractor", macProgram());
  expectRefusal(
      "bin/extractor is for macos-arm64, but bin/launcher is for linux-x86_64; a bundle needs all "
      "for one system and processor");
}

TEST_F(PackFit, RefusesAnExecutableThatIsNone) {
  write("bin/lzma64", "#!/bin/sh\n");
  expectRefusal("bin/lzma64 is not a program: it is neither an ELF nor a Mach-O file");
}

TEST_F(PackFit, RefusesADamagedLibrary) {
  write("runtime/lib/libzip.so", test::elfFile(test::ELF_X86_64).substr(0, 12));
  expectRefusal("runtime/lib/libzip.so is damaged: it ends within its header");
}

TEST_F(PackFit, RefusesAnApplicationWithoutALibraryForTheTarget) {
  useExecutables(macProgram());
  write("app/natives/libsmall.so", test::elfFile(test::ELF_X86_64));
  expectRefusal(
      "app/natives/libsmall.so is for linux-x86_64, but bin/launcher is for macos-arm64, and app "
      "has no such file for macos-arm64");
}

TEST_F(PackFit, RefusesAnUpdaterWithoutALibraryForTheTarget) {
  write("updater/libsmall.dylib", macLibrary());
  expectRefusal(
      "updater/libsmall.dylib is for macos-arm64, but bin/launcher is for linux-x86_64, and "
      "updater has no such file for linux-x86_64");
}

TEST_F(PackFit, TakesLibrariesOfAllSystemsBesideEachOther) {
  useExecutables(macProgram());
  write("app/natives/linux/libsmall.so", test::elfFile(test::ELF_X86_64));
  write("app/natives/mac/x86_64/libsmall.dylib", macLibrary(test::MACH_X86_64));
  write("app/natives/mac/arm64/libsmall.dylib", macLibrary());
  write("app/natives/windows/small.dll", "MZ and more");
  expectFact("made for macos-arm64, from macOS 11.0 on", "macos-arm64");
}

TEST_F(PackFit, OfUniversalExecutablesIsForBothProcessors) {
  useExecutables(universalProgram());
  expectRefusal(
      "the executables in bin are for macos-arm64 and macos-x86_64; name one target with "
      "--target");
  expectFact("made for macos-arm64 and macos-x86_64, from macOS 11.0 on", "macos-x86_64",
             {"--target", "macos-x86_64"});
}

TEST_F(PackFit, OfUniversalExecutablesIsForTheRuntimesProcessor) {
  useExecutables(universalProgram());
  write("runtime/lib/server/libjvm.dylib",
        test::machFile(test::MACH_X86_64, test::MACH_LIBRARY, {test::versionMin(0x000c0600)}));
  expectFact("made for macos-x86_64, from macOS 12.6 on", "macos-x86_64");
}

TEST_F(PackFit, IsFoundMissingInAFinishedBundle) {
  write("runtime/lib/server/libjvm.so", test::elfFile(test::ELF_X86_64));
  write("app/libsmall.so", test::elfFile(test::ELF_X86_64));
  ASSERT_TRUE(project_.build().succeeded());
  write(kExecutable, macProgram());
  expectProblem("updater/lzma64 is for linux-x86_64, but " + kExecutable +
                " is for macos-arm64; a bundle needs all for one system and processor\n"
                "  runtime/Contents/Home/lib/server/libjvm.so is for linux-x86_64, but " +
                kExecutable +
                " is for macos-arm64; a bundle needs all for one system and processor\n"
                "  application/libsmall.so is for linux-x86_64, but " +
                kExecutable +
                " is for macos-arm64, and application has no such file for macos-arm64");
}

TEST_F(PackFit, IsFoundMissingInALauncherBundleThatIsNone) {
  ASSERT_TRUE(project_.build().succeeded());
  const std::string launcher = test::bundleIn("dist", "launcher");
  write(launcher + "/Contents/MacOS/Small App", "text");
  project_.pack({"verify", launcher})
      .fails(launcher + " would not work:\n  " + launcher +
             "/Contents/MacOS/Small App is not a program: it is neither an ELF nor a Mach-O file");
}

TEST_F(PackFit, IsFoundMissingInASite) {
  ASSERT_TRUE(project_.build().succeeded());
  useExecutables(macProgram());
  write("runtime/lib/server/libjvm.dylib", macLibrary());
  ASSERT_TRUE(project_.build({"--output", "other"}).succeeded());
  const std::string end = "; a bundle needs all for one system and processor";
  expectProblem("site, updater/lzma64 is for macos-arm64, but " + kExecutable +
                    " is for linux-x86_64" + end +
                    "\n  site, runtime/Contents/Home/lib/server/libjvm.dylib is for macos-arm64, "
                    "but " +
                    kExecutable + " is for linux-x86_64" + end,
                {"--site", "other/site"});
}

}  // namespace
