#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/blackbox/pack/transcript.h"
#include "tests/support/files.h"
#include "tests/support/format_examples.h"
#include "tests/support/temp_folder.h"

namespace {

test::Transcript params(std::vector<std::string> words) {
  words.insert(words.begin(), "params");
  return test::runPack(words);
}

TEST(PackParams, ReadsWhatItWrote) {
  const test::TempFolder folder;
  const std::string path = folder / "params";
  params({"write", path, "update_url=http://127.0.0.1/?a=b", "empty=", "a b=c d"}).ends(0);
  params({"read", path}).prints("update_url=http://127.0.0.1/?a=b\nempty=\na b=c d\n");
  params({"read", "--value", "update_url", path}).prints("http://127.0.0.1/?a=b\n");
  params({"write", "--replace", path}).ends(0);
  params({"read", path}).prints("");
}

TEST(PackParams, KeepsWhatStandsUnlessItIsGivenOrUnset) {
  const test::TempFolder folder;
  const std::string bundle = folder / "S.app";
  test::writeFile(bundle + "/Contents/Resources/other", "");
  ASSERT_TRUE(
      params({"write", bundle, "jre_name=Mine", "require_signature=true", "a=1"}).succeeded());
  params({"write", bundle, "show_no_ui=true", "jre_name=Other"}).ends(0);
  params({"read", bundle}).prints("jre_name=Other\nrequire_signature=true\na=1\nshow_no_ui=true\n");
  params({"write", bundle, "b=2", "--unset", "a", "--unset", "show_no_ui"}).ends(0);
  params({"read", bundle}).prints("jre_name=Other\nrequire_signature=true\nb=2\n");
  params({"write", "--replace", bundle, "c=3"}).ends(0);
  params({"read", bundle}).prints("c=3\n");
}

TEST(PackParams, ReplacesAFileOfAnotherKindOnlyByForce) {
  const test::TempFolder folder;
  const std::string path = folder / "project.toml";
  test::writeFile(path, "[application]");
  for (const char* option : {"--replace", "a=b"}) {
    params({"write", path, option})
        .fails(path +
               " already exists and is not a valid params file (this is not a params file: its "
               "marker is missing); name another file, or replace it with --force");
    EXPECT_EQ("[application]", test::readFile(path));
  }
  params({"write", "--force", path, "a=b"}).ends(0);
  params({"read", path}).prints("a=b\n");
}

TEST(PackParams, RefusesMoreThanAnInstallerHandsOn) {
  const test::TempFolder folder;
  const std::string path = folder / "params";
  const std::string half(120000, 'x');
  ASSERT_TRUE(params({"write", path, "a=" + half}).succeeded());
  params({"write", path, "b=" + half})
      .fails(
          "the property b does not fit: all properties together have 200000 bytes; shorten some");
  params({"read", "--value", "a", path}).prints(half + "\n");
}

TEST(PackParams, FindsTheFileInABundle) {
  const test::TempFolder folder;
  const std::string file = folder / "S.app/Contents/Resources/AppParams.excludefromsigning";
  test::writeFile(folder / "S.app/Contents/Resources/other", "");
  params({"write", folder / "S.app", "show_no_ui=true"}).ends(0);
  params({"read", folder / "S.app"}).prints("show_no_ui=true\n");
  params({"read", file}).prints("show_no_ui=true\n");
}

TEST(PackParams, MakesTheFormatsExampleWithTheCommandThatTheDocumentShows) {
  const test::TempFolder folder;
  test::runShell(folder.path(), test::formatBlock("sh", "params-file")).ends(0);
  EXPECT_EQ(test::formatBlock("hex", "params-file"),
            test::hexDump(test::readFile(folder / "PARAMS")));
}

TEST(PackParams, NamesWhatIsWrong) {
  const test::TempFolder folder;
  const std::string path = folder / "params";
  const auto errorOf = [](const std::vector<std::string>& arguments) {
    const test::Transcript result = params(arguments);
    result.ends(1);
    return result.err;
  };
  EXPECT_EQ("quorvane-pack: " + path + " cannot be read: No such file or directory\n",
            errorOf({"read", path}));
  test::writeFile(path, "junk");
  EXPECT_EQ("quorvane-pack: " + path + ": this is not a params file: its marker is missing\n",
            errorOf({"read", path}));
  ASSERT_TRUE(params({"write", "--force", path, "a=b"}).succeeded());
  EXPECT_EQ("quorvane-pack: there is no property c to remove\n",
            errorOf({"write", path, "--unset", "c"}));
  EXPECT_EQ("quorvane-pack: " + path + " has no property c\n",
            errorOf({"read", "--value", "c", path}));
}

// The file may be changed by hand or cut short on its way to a customer.
TEST(PackParams, SaysWhereAFileIsDamaged) {
  const test::TempFolder folder;
  const std::string path = folder / "params";
  ASSERT_TRUE(params({"write", path, "a=b"}).succeeded());
  const std::string marker = test::readFile(path).substr(0, 64);
  const auto errorOf = [&](const std::string& behindMarker) {
    test::writeFile(path, marker + behindMarker);
    const test::Transcript result = params({"read", path});
    result.ends(1);
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
  params({"write", folder / "params", name + "=value"})
      .fails("the property name " + name +
             " is 1023 bytes long, at most 1022 are read; shorten it");
}

TEST(PackParams, UsedWronglyEndsWith2) {
  params({}).ends(2);
  params({"read"}).ends(2);
  params({"write"}).ends(2);
  const test::TempFolder folder;
  const std::string path = folder / "params";
  for (const char* word : {"word", "=value"}) {
    params({"write", path, word})
        .isMisused(std::string(word) + " is not a property; expected NAME=VALUE\n");
    EXPECT_FALSE(test::exists(path));
  }
}

}  // namespace
