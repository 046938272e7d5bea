// The worked examples of docs/formats.md.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "launch/launch_file.h"
#include "launch/launch_properties.h"
#include "tests/support/format_examples.h"
#include "tests/unit/launch/launching.h"
#include "tools/formats/launch_file_text.h"
#include "tools/formats/launch_file_writer.h"

using Texts = std::vector<std::string>;

static tools::LaunchFile exampleLaunchFile() {
  return tools::launchFileFromText(test::formatBlock("toml", "launch-file"));
}

static const Texts& exampleOptions() {
  static const Texts options = {"-Xss2m", "-Dname=a value"};
  return options;
}

TEST(FormatExample, OfTheLaunchFileIsWhatTheToolWrites) {
  EXPECT_EQ(test::formatBlock("hex", "launch-file"),
            test::hexDump(tools::encodeLaunchFile(exampleLaunchFile())));
}

TEST(FormatExample, OfTheOptionsFileIsWhatTheToolWrites) {
  EXPECT_EQ(test::formatBlock("hex", "options-file"),
            test::hexDump(tools::encodeOptionsFile(exampleOptions())));
}

TEST(FormatExample, OfThePropertiesFileIsTheBuffersContent) {
  std::vector<char> buffer(2000);
  addStaticProperty(buffer.data(), "app_name", "Hello");
  addStaticProperty(buffer.data(), "update_url", "");
  addStaticProperty(buffer.data(), "app_dir", "/apps/Quorvane-Hello-3-complete");
  addStaticProperty(buffer.data(), "jre_name", "Mac64JRE");
  addStaticProperty(buffer.data(), "launched_from_dynprops", "/opt/Hello");
  addDynamicProperty(buffer.data(), "url_req", "hello:x");
  addStaticProperty(buffer.data(), "jvm_options_count", "2");
  addStaticProperty(buffer.data(), "jvm_options_0", exampleOptions()[0].c_str());
  addStaticProperty(buffer.data(), "jvm_options_1", exampleOptions()[1].c_str());
  const size_t length = static_cast<size_t>(propsLen(buffer.data()));
  EXPECT_EQ(test::formatBlock("hex", "launch-properties-file"),
            test::hexDump(std::string(buffer.data(), length)));
}
