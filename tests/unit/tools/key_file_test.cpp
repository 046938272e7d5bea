#include "tools/keys/key_file.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <string>

#include "platform/process_end.h"
#include "tests/support/capture.h"
#include "tests/support/files.h"
#include "tests/support/temp_folder.h"
#include "tools/system/input_error.h"

namespace {

std::string keyFileError(const std::string& path) {
  try {
    tools::writePrivateKey(path, "secret");
  } catch (const tools::InputError& error) {
    return error.what();
  }
  return "";
}

TEST(WritePrivateKey, MakesAFileThatItsOwnerAloneMayReadAndWriteWhateverTheUmask) {
  const test::TempFolder folder;
  for (const mode_t mask : {0u, 022u, 077u, 0377u}) {
    const std::string path = folder / std::to_string(mask);
    const mode_t before = umask(mask);
    tools::writePrivateKey(path, "secret");
    umask(before);
    EXPECT_EQ(0600u, test::modeOf(path)) << mask;
    EXPECT_EQ("secret", test::readFile(path));
  }
}

TEST(WritePrivateKey, DoesNotReplaceAFile) {
  const test::TempFolder folder;
  test::writeFile(folder / "a.key", "older");
  EXPECT_EQ(
      "the key file " + folder / "a.key" +
          " cannot be created: File exists; choose another name, an existing key is never replaced",
      keyFileError(folder / "a.key"));
  EXPECT_EQ("older", test::readFile(folder / "a.key"));
}

TEST(WritePrivateKey, DoesNotFollowADanglingLink) {
  const test::TempFolder folder;
  ASSERT_EQ(0, symlink((folder / "elsewhere").c_str(), (folder / "a.key").c_str()));
  EXPECT_NE("", keyFileError(folder / "a.key"));
  EXPECT_FALSE(test::exists(folder / "elsewhere"));
}

TEST(WritePrivateKey, IntoAFolderThatIsNotThereIsAnInputError) {
  const test::TempFolder folder;
  EXPECT_EQ(
      "the key file " + folder / "none/a.key" + " cannot be created: No such file or directory",
      keyFileError(folder / "none/a.key"));
}

TEST(WritePrivateKey, ThatCannotBeWrittenWholeLeavesNothingBehind) {
  const test::TempFolder folder;
  const std::string path = folder / "a.key";
  const test::Result result = test::runInChild([&path] {
    signal(SIGXFSZ, SIG_IGN);
    const rlimit limit = {3, 3};
    setrlimit(RLIMIT_FSIZE, &limit);
    const std::string error = keyFileError(path);
    endProcess(error == "the key file " + path + " cannot be written: File too large" ? 0 : 1);
  });
  EXPECT_EQ(0, result.status);
  EXPECT_FALSE(test::exists(path));
}

TEST(IsOpenToOthers, LooksAtTheBitsOfGroupAndOthers) {
  const test::TempFolder folder;
  test::writeFile(folder / "a", "secret", 0600);
  EXPECT_FALSE(tools::isOpenToOthers(folder / "a"));
  for (const mode_t mode : {0640u, 0604u, 0620u, 0644u}) {
    ASSERT_EQ(0, chmod((folder / "a").c_str(), mode));
    EXPECT_TRUE(tools::isOpenToOthers(folder / "a")) << mode;
  }
  EXPECT_FALSE(tools::isOpenToOthers(folder / "none"));
}

}  // namespace
