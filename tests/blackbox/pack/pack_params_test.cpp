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
  EXPECT_EQ(0, params({"write", "--replace", path}).status);
  EXPECT_EQ("", params({"read", path}).out);
}

TEST(PackParams, KeepsWhatStandsUnlessItIsGivenOrUnset) {
  const test::TempFolder folder;
  const std::string bundle = folder / "S.app";
  test::writeFile(bundle + "/Contents/Resources/other", "");
  ASSERT_EQ(0, params({"write", bundle, "jre_name=Mine", "require_signature=true", "a=1"}).status);
  EXPECT_EQ(0, params({"write", bundle, "show_no_ui=true", "jre_name=Other"}).status);
  EXPECT_EQ("jre_name=Other\nrequire_signature=true\na=1\nshow_no_ui=true\n",
            params({"read", bundle}).out);
  EXPECT_EQ(0, params({"write", bundle, "b=2", "--unset", "a", "--unset", "show_no_ui"}).status);
  EXPECT_EQ("jre_name=Other\nrequire_signature=true\nb=2\n", params({"read", bundle}).out);
  EXPECT_EQ(0, params({"write", "--replace", bundle, "c=3"}).status);
  EXPECT_EQ("c=3\n", params({"read", bundle}).out);
}

TEST(PackParams, ReplacesAFileOfAnotherKindOnlyByForce) {
  const test::TempFolder folder;
  const std::string path = folder / "project.toml";
  test::writeFile(path, "[application]");
  for (const char* option : {"--replace", "a=b"}) {
    const test::Result result = params({"write", path, option});
    EXPECT_EQ(1, result.status);
    EXPECT_EQ("quorvane-pack: " + path +
                  " already exists and is not a valid params file (this is not a params file: its "
                  "marker is missing); name another file, or replace it with --force\n",
              result.err);
    EXPECT_EQ("[application]", test::readFile(path));
  }
  EXPECT_EQ(0, params({"write", "--force", path, "a=b"}).status);
  EXPECT_EQ("a=b\n", params({"read", path}).out);
}

TEST(PackParams, RefusesMoreThanAnInstallerHandsOn) {
  const test::TempFolder folder;
  const std::string path = folder / "params";
  const std::string half(120000, 'x');
  ASSERT_EQ(0, params({"write", path, "a=" + half}).status);
  const test::Result result = params({"write", path, "b=" + half});
  EXPECT_EQ(1, result.status);
  EXPECT_EQ(
      "quorvane-pack: the property b does not fit: all properties together have 200000 bytes; "
      "shorten some\n",
      result.err);
  EXPECT_EQ(half + "\n", params({"read", "--value", "a", path}).out);
}

TEST(PackParams, FindsTheFileInABundle) {
  const test::TempFolder folder;
  const std::string file = folder / "S.app/Contents/Resources/AppParams.excludefromsigning";
  test::writeFile(folder / "S.app/Contents/Resources/other", "");
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
  EXPECT_EQ("quorvane-pack: " + path + " cannot be read: No such file or directory\n",
            errorOf({"read", path}));
  test::writeFile(path, "junk");
  EXPECT_EQ("quorvane-pack: " + path + ": this is not a params file: its marker is missing\n",
            errorOf({"read", path}));
  ASSERT_EQ(0, params({"write", "--force", path, "a=b"}).status);
  EXPECT_EQ("quorvane-pack: there is no property c to remove\n",
            errorOf({"write", path, "--unset", "c"}));
  EXPECT_EQ("quorvane-pack: " + path + " has no property c\n",
            errorOf({"read", "--value", "c", path}));
}

// The file may be changed by hand or cut short on its way to a customer.
TEST(PackParams, SaysWhereAFileIsDamaged) {
  const test::TempFolder folder;
  const std::string path = folder / "params";
  ASSERT_EQ(0, params({"write", path, "a=b"}).status);
  const std::string marker = test::readFile(path).substr(0, 64);
  const auto errorOf = [&](const std::string& behindMarker) {
    test::writeFile(path, marker + behindMarker);
    const test::Result result = params({"read", path});
    EXPECT_EQ(1, result.status);
    return result.err.substr(("quorvane-pack: " + path + ": ").size());
  };
  EXPECT_EQ("the params file is damaged at byte 64: it ends inside the number of properties\n",
            errorOf("1"));
  EXPECT_EQ("the params file is damaged at byte 66: it ends inside a property's name\n",
            errorOf(test::field("2")));
  EXPECT_EQ("the params file is damaged at byte 70: it ends inside a property's name\n",
            errorOf(test::field("2") + test::field("a") + test::field("b") + "c"));
  EXPECT_EQ("the params file is damaged at byte 68: it ends inside a property's value\n",
            errorOf(test::field("1") + test::field("a") + "b"));
  for (const char* count : {"", "-1", "many", "1x"}) {
    EXPECT_EQ(std::string("the params file is damaged at byte 64: the number of properties is '") +
                  count + "', expected a decimal number\n",
              errorOf(test::field(count)));
  }
}

TEST(PackParams, RefusesTextsThatAreLongerThanWhatIsRead) {
  const test::TempFolder folder;
  const std::string name(1023, 'n');
  const test::Result result = params({"write", folder / "params", name + "=value"});
  EXPECT_EQ(1, result.status);
  EXPECT_EQ("quorvane-pack: the property name " + name +
                " is 1023 bytes long, at most 1022 are read; shorten it\n",
            result.err);
}

TEST(PackParams, UsedWronglyEndsWith2) {
  EXPECT_EQ(2, params({}).status);
  EXPECT_EQ(2, params({"read"}).status);
  EXPECT_EQ(2, params({"write"}).status);
  const test::TempFolder folder;
  const std::string path = folder / "params";
  for (const char* word : {"word", "=value"}) {
    const test::Result result = params({"write", path, word});
    EXPECT_EQ(2, result.status);
    EXPECT_EQ(0u, result.err.find(std::string(word) + " is not a property; expected NAME=VALUE\n"))
        << result.err;
    EXPECT_FALSE(test::exists(path));
  }
}

}  // namespace
