// A real Java runtime from its preparation in the master folder to a program that the launcher runs
// in it: one that came as a bundle, and a plain Java home that was adopted from the system.

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <ostream>
#include <string>

#include "extractor/run/run.h"
#include "extractor/runtime/jre_layout.h"
#include "extractor/runtime/publish_runtime.h"
#include "tests/support/capture.h"
#include "tests/support/files.h"
#include "tests/support/launcher_bundle.h"
#include "tests/support/product_system.h"

namespace fs = std::filesystem;

namespace {

struct Origin {
  const char* label;
  const char* place;  // where the Java home lies in what is prepared
};

// What a failure, and the test's name, show of it.
void PrintTo(const Origin& value, std::ostream* out) {
  *out << value.label;
}

class PreparedRuntime : public testing::TestWithParam<Origin> {
 protected:
  PreparedRuntime() {
    bundle_.appendTail(test::Tail());
    const std::string unpacked = bundle_.master("QuorvaneTemp-1-2-app") + GetParam().place;
    fs::create_directories(fs::path(unpacked).parent_path());
    test::capture([&] {
      const std::string copy = "cp -LRf \"" + test::testRuntime() + "\" \"" + unpacked + "\"";
      EXPECT_EQ(0, system(copy.c_str()));
      setPath(run_.masterFolder, bundle_.master().c_str());
      setPath(run_.jreTemp, bundle_.master("QuorvaneTemp-1-2-app").c_str());
      setPath(run_.jreFolder, plain().c_str());
      publishRuntime(run_);
    });
  }

  std::string name() const { return "Quorvane-Mac64JRE-00000000000-complete"; }
  std::string plain() const { return bundle_.master(name()); }
  std::string plugin() const { return plain() + ".plugin"; }

  test::LauncherBundle bundle_;
  ExtractorRun run_{};
};

}  // namespace

TEST_P(PreparedRuntime, IsChosenAndRunsAProgramInsideTheLauncher) {
  const test::Result result =
      bundle_.run({"-cp", QUORVANE_TEST_CLASSES, "guest.Program", "one argument"});
  EXPECT_EQ(0, result.status) << result.out << result.err;
  EXPECT_TRUE(test::containsInOrder(
      test::messagesOf(result.out),
      {"[Launcher] Located existing JRE runtime = " + name(), "[Launcher] JRE path is " + plain(),
       "[Guest] <one argument>", "[JNILauncher] Done!"}));
}

TEST_P(PreparedRuntime, HasAJavaThatWorksInItsBinAndThroughTheToolPath) {
  char* tool = nullptr;
  test::capture([&] { tool = getJavaExecutable(plugin().c_str()); });
  for (const std::string& java : {plain() + "/bin/java", std::string(tool)}) {
    const test::Result result =
        test::run({{java, "-cp", QUORVANE_TEST_CLASSES, "guest.Program", "one argument"}});
    EXPECT_EQ(0, result.status) << java << result.err;
    EXPECT_NE(std::string::npos, result.out.find("[Guest] <one argument>")) << java;
  }
  free(tool);
}

INSTANTIATE_TEST_SUITE_P(From, PreparedRuntime,
                         testing::Values(Origin{"ABundle", "/Contents/Home"},
                                         Origin{"APlainJavaHome", ""}),
                         [](const auto& info) { return info.param.label; });
