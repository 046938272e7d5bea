#include <gtest/gtest.h>

#include <filesystem>

#include "tests/support/files.h"
#include "tests/support/process.h"
#include "tests/support/temp_folder.h"

namespace fs = std::filesystem;
using Names = std::vector<std::string>;

// Works on a packed jar of real classes that the build makes.
class Unpack200 : public testing::Test {
 protected:
  static std::string tool(const std::string& name) { return QUORVANE_JDK "/bin/" + name; }

  test::Result run(const std::vector<std::string>& arguments, int status = 0) {
    test::Command command;
    command.arguments = arguments;
    command.unset = {"JAVA_HOME"};
    test::Result result = test::run(command);
    EXPECT_EQ(status, result.status) << result.out << result.err;
    return result;
  }

  // Runs the tool on `bytes` and expects it to fail, saying `reason`, and to leave nothing behind.
  void expectFailure(const std::string& bytes, const std::string& reason) {
    test::writeFile(folder_ / "f/in", bytes);
    const test::Result result = run({unpack200(), folder_ / "f/in", folder_ / "f/out"}, 1);
    EXPECT_NE(std::string::npos, result.err.find(reason)) << result.err;
    EXPECT_EQ(Names{"in"}, test::namesIn(folder_ / "f"));
  }

  std::string unpack200() const { return QUORVANE_PACK200_TOOLS "/unpack200/bin/unpack200"; }
  static std::string jar() { return QUORVANE_PACK200_SAMPLE "/sample.jar"; }
  static std::string packed() { return QUORVANE_PACK200_SAMPLE "/sample.pack"; }
  std::string unpacked() const { return folder_ / "out.jar"; }

  test::TempFolder folder_;
};

TEST_F(Unpack200, MakesAJarThatRunsLikeTheOneThatWasPacked) {
  run({unpack200(), packed(), unpacked()});
  EXPECT_NE(test::readFile(jar()), test::readFile(unpacked()));
  const std::string wanted = run({tool("java"), "-cp", jar(), "app.Main"}).out;
  EXPECT_NE(std::string::npos, wanted.find("GREEN 2"));
  EXPECT_EQ(wanted, run({tool("java"), "-cp", unpacked(), "app.Main"}).out);
}

TEST_F(Unpack200, ReadsAFileThatIsCompressedWithGzipToo) {
  run({unpack200(), packed(), unpacked()});
  test::writeFile(folder_ / "in", test::readFile(packed()));
  run({"/usr/bin/gzip", folder_ / "in"});
  run({unpack200(), folder_ / "in.gz", folder_ / "other.jar"});
  EXPECT_EQ(test::readFile(unpacked()), test::readFile(folder_ / "other.jar"));
}

TEST_F(Unpack200, RunsInARuntimeThatHasOnlyTheBaseModule) {
  const std::string runtime = folder_ / "runtime";
  run({tool("jlink"), "--add-modules", "java.base", "--strip-debug", "--output", runtime});
  fs::copy(QUORVANE_PACK200_TOOLS "/unpack200", runtime,
           fs::copy_options::recursive | fs::copy_options::overwrite_existing);
  test::Command command;
  command.arguments = {runtime + "/bin/unpack200", packed(), unpacked()};
  // No other java can be found; the wrapper itself needs dirname.
  fs::create_directory(folder_ / "path");
  fs::create_symlink("/usr/bin/dirname", folder_ / "path/dirname");
  command.environment = {{"PATH", folder_ / "path"}};
  command.unset = {"JAVA_HOME"};
  const test::Result result = test::run(command);
  EXPECT_EQ(0, result.status) << result.err;
  EXPECT_NE(std::string::npos,
            run({tool("java"), "-cp", unpacked(), "app.Main"}).out.find("young"));
}

TEST_F(Unpack200, RefusesJunkInsteadOfMakingAnEmptyJar) {
  expectFailure("junk, junk, junk", "is no pack200 file");
  expectFailure("", "is no pack200 file");
  expectFailure("\xCA\xFE", "is no pack200 file");
  expectFailure(test::readFile(jar()), "is no pack200 file");
}

TEST_F(Unpack200, RefusesAFileThatIsCutShort) {
  const std::string whole = test::readFile(packed());
  for (const size_t length : {size_t{4}, size_t{5}, whole.size() / 2, whole.size() - 1}) {
    expectFailure(whole.substr(0, length), "unpack200: ");
  }
}

TEST_F(Unpack200, RefusesAMissingInput) {
  EXPECT_NE(std::string::npos,
            run({unpack200(), folder_ / "missing", unpacked()}, 1).err.find("missing"));
}

TEST_F(Unpack200, ShowsItsUsageForAnythingButTwoArguments) {
  EXPECT_EQ("usage: unpack200 IN OUT\n", run({unpack200(), "in"}, 2).err);
}
