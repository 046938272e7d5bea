#include "extractor/run/names.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/support/capture.h"
#include "tests/support/files.h"

namespace {

struct Names {
  const char* test;
  const char* jre;
  const char* app;
  const char* refused;  // what the last line says, null when the run goes on
};

std::ostream& operator<<(std::ostream& out, const Names& names) {
  return out << names.test;
}

class ComponentNames : public testing::TestWithParam<Names> {};

std::string nameOf(const testing::TestParamInfo<Names>& info) {
  return info.param.test;
}

}  // namespace

TEST_P(ComponentNames, AreRefusedWhereTheirFoldersCouldNotBeToldApart) {
  const Names names = GetParam();
  const test::Result result = test::runInChild([&] { requireDistinctNames(names.jre, names.app); });
  if (names.refused == nullptr) {
    EXPECT_EQ(test::CODE_RETURNED, result.status) << result.out;
    return;
  }
  EXPECT_EQ(1, result.status);
  EXPECT_TRUE(test::containsInOrder(test::logLinesOf(result.out), {names.refused})) << result.out;
}

INSTANTIATE_TEST_SUITE_P(
    All, ComponentNames,
    testing::Values(Names{"Distinct", "Mac64JRE", "MyApp", nullptr},
                    Names{"NoRuntimeName", "", "MyApp", nullptr},

                    Names{"UpdaterInOtherCase", "quorvane", "MyApp",
                          "[Extractor] The JRE name cannot name a component: quorvane"},
                    Names{"UpdaterAsRuntime", "Quorvane", "MyApp",
                          "[Extractor] The JRE name cannot name a component: Quorvane"},
                    Names{"UpdaterAsApplication", "Mac64JRE", "Quorvane",
                          "[Extractor] The App Name cannot name a component: Quorvane"},
                    Names{"ApplicationAsRuntime", "MyApp", "MyApp",
                          "[Extractor] The JRE name cannot name a component: MyApp"},
                    Names{"RuntimeWithADash", "Mac64-JRE", "MyApp",
                          "[Extractor] The JRE name cannot name a component: Mac64-JRE"},
                    Names{"ApplicationWithADash", "Mac64JRE", "My-App", nullptr}),
    nameOf);
