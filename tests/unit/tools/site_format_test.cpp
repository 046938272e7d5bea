#include <gtest/gtest.h>

#include <string>

#include "extractor/archives/component_archive.h"
#include "formats/names.h"
#include "tests/support/format_examples.h"
#include "tools/formats/archive_records.h"
#include "tools/formats/update_site.h"
#include "tools/project/update_settings.h"

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
