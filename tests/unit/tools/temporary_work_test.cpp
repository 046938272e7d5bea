#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

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
