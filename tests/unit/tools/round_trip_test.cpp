#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include "extractor/run/params_file.h"
#include "extractor/run/run.h"
#include "extractor/runtime/version_file.h"
#include "formats/params_format.h"
#include "formats/site_names.h"
#include "launch/launch_properties.h"
#include "support/encoding/field_reader.h"
#include "support/owned.h"
#include "tests/support/capture.h"
#include "tests/support/files.h"
#include "tests/support/temp_folder.h"
#include "tools/bundle/installer_writer.h"
#include "tools/formats/params_writer.h"
#include "tools/system/input_error.h"

// What the packager writes, read by the functions of the product that an installer runs. The Tail
// record, launch files and archives have such tests beside those of their writers.

using namespace std::string_literals;

namespace {

// The launch properties that the product makes of a params file.
std::string propertiesOf(const tools::Properties& properties, ExtractorRun& run) {
  std::string bytes = tools::encodeParams(properties);
  test::logLinesOf([&] {
    const Stream params(fmemopen(bytes.data(), bytes.size(), "rb"));
    fseek(params.get(), PARAMS_MARKER_SIZE, SEEK_SET);
    readParams(run, params.get());
    EXPECT_EQ(static_cast<long>(bytes.size()), ftell(params.get()));
  });
  return {run.launchProperties, static_cast<size_t>(propsLen(run.launchProperties))};
}

TEST(ParamsRoundTrip, GivesTheProductEveryPairInItsOrder) {
  ExtractorRun run{};
  EXPECT_EQ(
      "qvdyna_update_url\0http://127.0.0.1/\0qvdyna_empty\0\4\0qvdyna_a b\0Gr\xc3\xb6\xc3\x9f"
      "e = \"1\"\n"s,
      propertiesOf({{"update_url", "http://127.0.0.1/"},
                    {"empty", ""},
                    {"a b",
                     "Gr\xc3\xb6\xc3\x9f"
                     "e = \"1\"\n"}},
                   run));
  EXPECT_STREQ("http://127.0.0.1/", run.dynamic.updateUrl);
}

TEST(ParamsRoundTrip, GivesTheProductTheLongestNameAndAMuchLongerValue) {
  ExtractorRun run{};
  const std::string name(1022, 'n');
  const std::string value(150000, 'v');
  EXPECT_EQ("qvdyna_" + name + "\0"s + value, propertiesOf({{name, value}}, run));
}

// The byte that breaks the beginning of a marker is not looked at again by the product.
TEST(ParamsRoundTrip, BeginningOfAMarkerInFrontOfItHidesItFromBoth) {
  const std::string bytes = tools::encodeParams({{"name", "value"}});
  EXPECT_EQ(1u, tools::decodeParams("x" + bytes).size());
  std::string hidden = bytes.substr(0, 1) + bytes;
  EXPECT_THROW(tools::decodeParams(hidden), tools::InputError);
  const Stream params(fmemopen(hidden.data(), hidden.size(), "rb"));
  const char* marker = reinterpret_cast<const char*>(paramsMarker);
  test::capture(
      [&] { EXPECT_GT(0, scanToMarker(params.get(), marker, PARAMS_MARKER_SIZE, "Params")); });
}

TEST(ParamsRoundTrip, OfNoPropertyIsRead) {
  ExtractorRun run{};
  EXPECT_EQ("", propertiesOf({}, run));
}

TEST(VersionFileRoundTrip, GivesTheProductTheVersionOfTheSite) {
  const test::TempFolder folder;
  test::writeFile(folder / "runtime/bin/java", "a java", 0755);
  const std::string version = "123456789012345678";
  tools::writeSiteRuntime(folder / "site", "Mac64JRE", version, folder / "runtime", nullptr);
  const Stream file(fopen((folder / "site/" + versionFileName("Mac64JRE")).c_str(), "rb"));
  ASSERT_NE(nullptr, file);
  char found[VERSION_TEXT_SIZE] = "";
  bool isRead = false;
  test::logLinesOf([&] { isRead = readVersionText(file.get(), found); });
  EXPECT_TRUE(isRead);
  EXPECT_EQ(version, found);
}

}  // namespace
