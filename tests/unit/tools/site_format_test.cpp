#include <gtest/gtest.h>

#include <string>

#include "extractor/component_archive.h"
#include "tests/support/format_examples.h"
#include "tools/archive_records.h"
#include "tools/update_settings.h"
#include "tools/update_site.h"

namespace {

TEST(SiteFormat, OfTheComponentRecordIsTheDocumentsExample) {
  const std::string data = tools::componentRecord("Hello", "3");
  const std::string record =
      tools::fileRecordHead(COMPONENT_RECORD_PATH, static_cast<long>(data.size()),
                            tools::EntryKind::file) +
      data;
  EXPECT_EQ(test::formatBlock("hex", "component-record"), test::hexDump(record));
}

TEST(SiteFormat, OfTheUpdateSettingsIsTheDocumentsExample) {
  tools::UpdateSettings settings;
  settings.keep = 3;
  settings.url = "https://updates.example.org/hello/beta";
  EXPECT_EQ(test::formatBlock("properties", "update-settings"),
            tools::encodeUpdateSettings(settings));
}

}  // namespace
