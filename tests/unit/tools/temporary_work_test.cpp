#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "tests/support/files.h"
#include "tests/support/temp_folder.h"
#include "tools/system/child_process.h"
#include "tools/system/input_error.h"
#include "tools/system/temporary_folder.h"

TEST(TemporaryFolder, IsMadeInTmpWhenTheEnvironmentNamesNoFolder) {
  const char* standing = getenv("TMPDIR");
  const std::string earlier = standing == nullptr ? "" : standing;
  setenv("TMPDIR", "/nowhere", 1);
  {
    const tools::TemporaryFolder folder;
    EXPECT_EQ(0u, (folder / "x").find("/tmp/quorvane-"));
  }
  if (standing == nullptr) {
    unsetenv("TMPDIR");
  } else {
    setenv("TMPDIR", earlier.c_str(), 1);
  }
}

TEST(TemporaryFolder, ThatCannotBeMadeIsNamedWithTheReason) {
  try {
    const tools::TemporaryFolder folder("/nowhere");
    ADD_FAILURE();
  } catch (const tools::InputError& error) {
    const std::string what = error.what();
    const std::string reason = ": No such file or directory";
    EXPECT_EQ(0u, what.find("cannot create the temporary folder /nowhere/quorvane-")) << what;
    EXPECT_EQ(what.size() - reason.size(), what.rfind(reason)) << what;
  }
}

TEST(AbandonedFolders, AreRemovedAndThoseInUseAreNot) {
  const test::TempFolder place;
  const tools::TemporaryFolder used(place.path());
  test::writeFile(used / "file", "in use");
  test::writeFile(place / "quorvane-aaaaaa/file", "abandoned");
  test::writeFile(place / "quorvane-aaaaaa.lock", "");
  tools::removeAbandonedFolders(place.path());
  EXPECT_TRUE(test::exists(used / "file"));
  EXPECT_EQ(2u, test::namesIn(place.path()).size());
  EXPECT_FALSE(test::exists(place / "quorvane-aaaaaa"));
}

TEST(AbandonedFolders, LeaveNoLockBehindThatHasNoFolderAnyMore) {
  const test::TempFolder place;
  test::writeFile(place / "quorvane-aaaaaa.lock", "");
  std::filesystem::create_directory(place / "quorvane-bbbbbb.lock");
  tools::removeAbandonedFolders(place.path());
  EXPECT_EQ(std::vector<std::string>{"quorvane-bbbbbb.lock"}, test::namesIn(place.path()));
}

TEST(AbandonedFolders, LeadNowhereElse) {
  const test::TempFolder place;
  test::writeFile(place / "victim/file", "of somebody");
  std::filesystem::create_symlink(place / "victim", place / "quorvane-aaaaaa");
  test::writeFile(place / "quorvane-aaaaaa.lock", "");
  test::writeFile(place / "quorvane-bbbbbb/file", "of somebody");
  std::filesystem::create_symlink(place / "victim/file", place / "quorvane-bbbbbb.lock");
  test::writeFile(place / "quorvane-cccccc/file", "of a process that is about to lock it");
  tools::removeAbandonedFolders(place.path());
  EXPECT_TRUE(test::exists(place / "victim/file"));
  EXPECT_TRUE(test::exists(place / "quorvane-bbbbbb/file"));
  EXPECT_TRUE(test::exists(place / "quorvane-cccccc/file"));
}

TEST(RunForOutput, OfAProgramThatFailsLeavesStackTracesOut) {
  const std::string script =
      "echo 'Exception: why' >&2; printf '\\tat a.b(C.java)\\n\\t... 3 more\\n' >&2; exit 1";
  try {
    tools::runForOutput({"/bin/sh", "-c", script}, "/");
    ADD_FAILURE();
  } catch (const tools::InputError& error) {
    EXPECT_STREQ("/bin/sh failed:\nException: why\n", error.what());
  }
}
