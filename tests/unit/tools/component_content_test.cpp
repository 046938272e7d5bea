#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "tests/support/files.h"
#include "tests/support/temp_folder.h"
#include "tools/bundle/component_content.h"
#include "tools/system/input_error.h"

namespace {

class ComponentIdentity : public testing::Test {
 protected:
  ComponentIdentity() {
    test::writeFile(folder_ / "app/main.jar", "a jar");
    test::writeFile(folder_ / "launch", "a launch file");
    content_.files.folder = folder_ / "app";
    content_.files.files = {{"QuorvaneLaunch", folder_ / "launch"}};
    content_.texts = {{"version.txt", "3"}};
  }

  test::TempFolder folder_;
  tools::ComponentContent content_;
};

TEST_F(ComponentIdentity, IsThatOfTheBytesWhereverTheyComeFrom) {
  const std::string identity = tools::identityOf(content_);
  std::filesystem::rename(folder_ / "app", folder_ / "elsewhere");
  std::filesystem::rename(folder_ / "launch", folder_ / "another name");
  content_.files.folder = folder_ / "elsewhere";
  content_.files.files = {{"QuorvaneLaunch", folder_ / "another name"}};
  EXPECT_EQ(identity, tools::identityOf(content_));
}

TEST_F(ComponentIdentity, ChangesWithEachEntry) {
  const std::string identity = tools::identityOf(content_);
  test::writeFile(folder_ / "app/main.jar", "A jar");
  EXPECT_NE(identity, tools::identityOf(content_));
  test::writeFile(folder_ / "app/main.jar", "a jar");
  ASSERT_EQ(identity, tools::identityOf(content_));
  test::writeFile(folder_ / "launch", "another launch file");
  EXPECT_NE(identity, tools::identityOf(content_));
  test::writeFile(folder_ / "launch", "a launch file");
  content_.texts[0].second = "4";
  EXPECT_NE(identity, tools::identityOf(content_));
  content_.texts[0] = {"version2.txt", "3"};
  EXPECT_NE(identity, tools::identityOf(content_));
  content_.texts.clear();
  EXPECT_NE(identity, tools::identityOf(content_));
}

// What was packed meanwhile would be kept under the digest of what was there before.
TEST_F(ComponentIdentity, ThatIsNoLongerThereAfterPackingIsAnError) {
  const std::string identity = tools::identityOf(content_);
  test::writeFile(folder_ / "app/main.jar", "changed");
  try {
    tools::writeComponent(content_, identity, folder_ / "packed.p2.l2", nullptr);
    ADD_FAILURE() << "no error";
  } catch (const tools::InputError& error) {
    EXPECT_EQ((folder_ / "app") + " has changed while it was packed; build again", error.what());
  }
}

}  // namespace
