#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "launch/launch.h"
#include "tests/unit/launch/launching.h"

using Texts = std::vector<std::string>;

class LaunchClassPath : public Launching {
 protected:
  LaunchClassPath() { scene.installFakeRuntime(scene.runtime()); }

  // An entry whose joined path has `length` bytes.
  std::string entryOfPathLength(size_t length) const {
    return std::string(length - scene.appFolder().size() - 1, 'x');
  }

  void expectRefusal(const std::string& error) {
    const Launched launched = launch();
    EXPECT_FALSE(launched.returned);
    EXPECT_EQ(1, launched.result);
    ASSERT_FALSE(errorsIn(launched.lines).empty());
    EXPECT_EQ(error, errorsIn(launched.lines).back());
    EXPECT_TRUE(scene.propertiesFiles().empty());
  }
};

TEST_F(LaunchClassPath, OfNoEntriesIsAnEmptyTextBehindItsOption) {
  launch();
  const Texts started = startedWith();
  ASSERT_GE(started.size(), 4u);
  EXPECT_EQ((Texts{"-cp", "", "com.sample.Main"}), Texts(started.begin() + 1, started.begin() + 4));
}

TEST_F(LaunchClassPath, JoinsEachEntryWithTheApplicationFolder) {
  scene.launchFile.classPath = {"lib/a b.jar", "/c.jar", ""};
  launch();
  const std::string folder = scene.appFolder();
  EXPECT_EQ(folder + "/lib/a b.jar:" + folder + "//c.jar:" + folder + "/", startedWith()[2]);
}

TEST_F(LaunchClassPath, EntryThatJustFitsItsBufferIsTaken) {
  const std::string entry = entryOfPathLength(CLASS_PATH_ENTRY_SIZE - 1);
  scene.launchFile.classPath = {entry};
  EXPECT_EQ(0, launch().result);
  EXPECT_EQ(scene.appFolder() + "/" + entry, startedWith()[2]);
}

TEST_F(LaunchClassPath, EntryOneByteTooLongEndsTheProcess) {
  scene.launchFile.classPath = {entryOfPathLength(CLASS_PATH_ENTRY_SIZE)};
  expectRefusal("Unable to launch: a class path entry of 1000 bytes does not fit its 999 bytes");
}

TEST_F(LaunchClassPath, ThatJustFitsItsBufferIsTaken) {
  // 50 entries of 999 bytes and their colons are 49,999 bytes.
  scene.launchFile.classPath.assign(50, entryOfPathLength(CLASS_PATH_ENTRY_SIZE - 1));
  EXPECT_EQ(0, launch().result);
  EXPECT_EQ(static_cast<size_t>(CLASS_PATH_SIZE - 1), startedWith()[2].size());
}

TEST_F(LaunchClassPath, OneByteTooLongEndsTheProcess) {
  scene.launchFile.classPath.assign(49, entryOfPathLength(CLASS_PATH_ENTRY_SIZE - 1));
  scene.launchFile.classPath.push_back(entryOfPathLength(500));
  scene.launchFile.classPath.push_back(entryOfPathLength(499));
  expectRefusal("Unable to launch: the class path of 50000 bytes does not fit its 49999 bytes");
}
