#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "tests/support/files.h"
#include "tests/support/format_examples.h"
#include "tests/support/process.h"
#include "tests/support/temp_folder.h"

namespace {

test::Result params(std::vector<std::string> arguments) {
  arguments.insert(arguments.begin(), {QUORVANE_BIN "/quorvane-pack", "params"});
  return test::run({arguments, {}, {}, "", 60});
}

TEST(PackParams, ReadsWhatItWrote) {
  const test::TempFolder folder;
  const std::string path = folder / "params";
  EXPECT_EQ(
      0, params({"write", path, "update_url=http://127.0.0.1/?a=b", "empty=", "a b=c d"}).status);
  EXPECT_EQ("update_url=http://127.0.0.1/?a=b\nempty=\na b=c d\n", params({"read", path}).out);
  EXPECT_EQ("http://127.0.0.1/?a=b\n", params({"read", "--value", "update_url", path}).out);
  EXPECT_EQ(0, params({"write", path}).status);
  EXPECT_EQ("", params({"read", path}).out);
}

TEST(PackParams, FindsTheFileInABundle) {
  const test::TempFolder folder;
  const std::string file = folder / "S.app/Contents/Resources/AppParams.excludefromsigning";
  test::writeFile(file, "older");
  EXPECT_EQ(0, params({"write", folder / "S.app", "show_no_ui=true"}).status);
  EXPECT_EQ("show_no_ui=true\n", params({"read", folder / "S.app"}).out);
  EXPECT_EQ("show_no_ui=true\n", params({"read", file}).out);
}

TEST(PackParams, MakesTheFormatsExampleWithTheCommandThatTheDocumentShows) {
  const test::TempFolder folder;
  test::Command command;
  command.arguments = {"/bin/sh", "-c", test::formatBlock("sh", "params-file")};
  command.environment = {{"PATH", std::string(QUORVANE_BIN ":") + getenv("PATH")}};
  command.folder = folder.path();
  const test::Result result = test::run(command);
  EXPECT_EQ(0, result.status) << result.err;
  EXPECT_EQ(test::formatBlock("hex", "params-file"),
            test::hexDump(test::readFile(folder / "PARAMS")));
}

TEST(PackParams, NamesWhatIsWrong) {
  const test::TempFolder folder;
  const std::string path = folder / "params";
  const auto errorOf = [](const std::vector<std::string>& arguments) {
    const test::Result result = params(arguments);
    EXPECT_EQ(1, result.status);
    return result.err;
  };
  EXPECT_EQ("quorvane-pack: word is no property; expected NAME=VALUE\n",
            errorOf({"write", path, "word"}));
  EXPECT_EQ("quorvane-pack: a property has no name; give it one\n",
            errorOf({"write", path, "=value"}));
  EXPECT_FALSE(test::exists(path));
  EXPECT_EQ("quorvane-pack: " + path + " cannot be read: No such file or directory\n",
            errorOf({"read", path}));
  test::writeFile(path, "junk");
  EXPECT_EQ("quorvane-pack: " + path + ": this is no params file: its marker is missing\n",
            errorOf({"read", path}));
  ASSERT_EQ(0, params({"write", path, "a=b"}).status);
  EXPECT_EQ("quorvane-pack: " + path + " has no property c\n",
            errorOf({"read", "--value", "c", path}));
}

TEST(PackParams, UsedWronglyEndsWith2) {
  EXPECT_EQ(2, params({}).status);
  EXPECT_EQ(2, params({"read"}).status);
  EXPECT_EQ(2, params({"write"}).status);
}

}  // namespace
