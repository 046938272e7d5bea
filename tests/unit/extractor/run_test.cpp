// What single steps decide of a run: whether it is quiet, and how it says why it ends.

#include "extractor/run/run.h"

#include <dlfcn.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <functional>
#include <string>

#include "extractor/archives/component_archive.h"
#include "extractor/installation/install_updater.h"
#include "extractor/run/params_file.h"
#include "extractor/runtime/provision_jre.h"
#include "extractor/versions/hand_over.h"
#include "extractor/versions/temp_marks.h"
#include "formats/params_format.h"
#include "support/failure/failure.h"
#include "support/files/paths.h"
#include "tests/support/background.h"
#include "tests/support/capture.h"
#include "tests/support/files.h"
#include "tests/support/temp_folder.h"
#include "tests/unit/extractor/full_disk.h"

extern int progressPercent;  // of the splash

static bool areReadsFailing = false;

// Takes the place of the C library's function in this executable.
extern "C" int ferror(FILE* stream) {
  static const auto next = reinterpret_cast<int (*)(FILE*)>(dlsym(RTLD_NEXT, "ferror"));
  return areReadsFailing ? 1 : next(stream);
}

static int endOf(int, Failure failure) {
  return 100 + static_cast<int>(failure);
}

// Runs `code`, which is expected to fail, and returns the failure's status.
static int failureOf(const std::function<void()>& code) {
  return test::runInChild([&] {
           setEndOfFailures(endOf);
           code();
         })
      .status;
}

static const int kDiskFull = endOf(0, Failure::DiskFull);
static const int kNotWritable = endOf(0, Failure::FolderNotWritable);

class RunTest : public testing::Test {
 protected:
  RunTest() {
    setPath(run_.masterFolder, (folder_ / "missing").c_str());
    test::diskIsFullWhile = folder_ / "full";
  }
  ~RunTest() override { test::diskIsFullWhile.clear(); }

  void fillDisk() const { test::writeFile(folder_ / "full", ""); }

  test::TempFolder folder_;
  ExtractorRun run_{};
};

TEST_F(RunTest, IsQuietWhenItIsSilentOrElevatedOrBoth) {
  EXPECT_FALSE(isQuiet(run_));
  run_.silent = true;
  EXPECT_TRUE(isQuiet(run_));
  run_.elevated = true;
  EXPECT_TRUE(isQuiet(run_));
  run_.silent = false;
  EXPECT_TRUE(isQuiet(run_));
}

TEST_F(RunTest, ThatCannotBeSetUpElevatedNamesTheFullDiskIfThereIsOne) {
  const auto setUp = [this] {
    doElevatedSetupAndLaunch("", 0, nullptr, true, folder_.path().c_str(), "");
  };
  EXPECT_EQ(kNotWritable, failureOf(setUp));
  fillDisk();
  EXPECT_EQ(kDiskFull, failureOf(setUp));
}

TEST_F(RunTest, WithoutATemporaryFolderForItsRuntimeNamesTheFullDiskIfThereIsOne) {
  char jreVersion[] = "1";
  run_.tail.jreVersion = jreVersion;
  setPath(run_.guFolder, folder_.path().c_str());
  setPath(run_.jreName, "JRE");
  const auto extract = [this] { extractCarriedJre(run_); };
  EXPECT_EQ(kNotWritable, failureOf(extract));
  fillDisk();
  EXPECT_EQ(kDiskFull, failureOf(extract));
}

TEST_F(RunTest, EndsWhereAComponentsArchiveCannotBeCopied) {
  test::writeFile(folder_ / "archive", "content");
  const Descriptor archive = openComponentArchive((folder_ / "archive").c_str());
  ASSERT_TRUE(archive.isOpen());
  const std::string missing = folder_ / "missing";
  EXPECT_EQ(kNotWritable, failureOf([&] {
              extractComponent(run_, archive, missing.c_str(), nullptr, missing.c_str(), "App",
                               "1");
            }));
}

// The part that cannot be read may be the property that requires signatures.
TEST_F(RunTest, EndsWhereItsParamsFileCannotBeReadToItsEnd) {
  const std::string marker(reinterpret_cast<const char*>(paramsMarker), PARAMS_MARKER_SIZE);
  test::writeFile(folder_ / "MacOS/Setup", "");
  test::writeFile(folder_ / "Resources/AppParams.excludefromsigning", marker + test::field("0"));
  std::string executables = folder_ / "MacOS";
  run_.executableDir = executables.data();
  const auto read = [this] { readDynamicProperties(run_); };
  EXPECT_EQ(test::CODE_RETURNED, failureOf(read));
  areReadsFailing = true;
  EXPECT_EQ(endOf(0, Failure::BundleIncomplete), failureOf(read));
  areReadsFailing = false;
}

TEST_F(RunTest, ReleasesTheMarksOfAllItsFolders) {
  const std::string names[] = {folder_ / "one", folder_ / "two", folder_ / "three"};
  for (const std::string& name : names) {
    test::writeFile(name + "/file", "");
    markTempFolder(name.c_str());
    EXPECT_FALSE(isAbandoned(name.c_str())) << name;
  }
  releaseMarks();
  for (const std::string& name : names) {
    EXPECT_TRUE(isAbandoned(name.c_str())) << name;
  }
}

TEST_F(RunTest, OpensItsSplashWithABarOfUnknownProgress) {
  const test::OwnDisplay display;
  run_.silent = true;  // no window is needed for it
  setPath(run_.guFolder, folder_.path().c_str());
  EXPECT_EQ(7, test::runInChild([&] {
                 setenv("DISPLAY", display.name().c_str(), 1);
                 openSplash(run_);
                 _exit(progressPercent == -1 ? 7 : 1);
               }).status);
}
