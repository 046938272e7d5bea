#include "tools/apple/target_signing.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "tests/support/files.h"
#include "tests/support/mach_file.h"
#include "tests/support/temp_folder.h"

namespace {

using Texts = std::vector<std::string>;

// What is signed, with a tool that leaves every file as it is.
class TargetSigning : public ::testing::Test {
 protected:
  TargetSigning() {
    test::writeFile(folder_ / "tools/rcodesign", "#!/bin/sh\nexit 0\n", 0755);
    setenv("PATH", (folder_ / "tools").c_str(), 1);
    writeCode("extractor");
  }
  ~TargetSigning() override { setenv("PATH", path_.c_str(), 1); }

  void writeCode(const std::string& path) {
    test::writeFile(folder_ / path,
                    test::wholeMachFile(test::MACH_ARM64, test::MACH_LIBRARY, path));
  }

  // The notes about the content of two folders, without the first about the missing certificate.
  Texts notes() {
    tools::TargetSigning signing({}, folder_ / "extractor");
    tools::ArchiveContent content;
    content.folder = folder_ / "app";
    (void)signing.content(content, "application");
    (void)signing.runtime(folder_ / "home");
    Texts notes = signing.notes();
    notes.erase(notes.begin());
    return notes;
  }

  const std::string path_ = getenv("PATH");
  test::TempFolder folder_;
};

TEST_F(TargetSigning, NamesEachFrameworkWhoseFilesItSigns) {
  writeCode("app/lib/Web.framework/Versions/A/Web");
  writeCode("app/lib/Web.framework/Versions/A/Frameworks/Inner.framework/Inner");
  writeCode("app/libown.dylib");
  writeCode("home/lib/Other.framework/Other");
  EXPECT_EQ((Texts{"application: lib/Web.framework is signed file by file and not as a bundle, so "
                   "that nothing seals its resources",
                   "runtime: lib/Other.framework is signed file by file and not as a bundle, so "
                   "that nothing seals its resources"}),
            notes());
}

TEST_F(TargetSigning, SaysNothingOfAFrameworkThatKeepsItsSignature) {
  test::writeFile(folder_ / "app/Web.framework/Web",
                  test::signedMachFile(test::MACH_ARM64, test::MACH_LIBRARY, "web", {}));
  test::writeFile(folder_ / "app/Data.framework/data", "no code");
  test::writeFile(folder_ / "home/release", "");
  EXPECT_EQ(Texts{}, notes());
}

}  // namespace
