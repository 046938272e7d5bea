// The worked examples of docs/formats.md that archives and their neighbours have.

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "archive/archive.h"
#include "extractor/run/params_file.h"
#include "formats/params_format.h"
#include "support/encoding/field_reader.h"
#include "support/owned.h"
#include "tests/support/capture.h"
#include "tests/support/files.h"
#include "tests/support/format_examples.h"
#include "tests/support/hex_text.h"
#include "tests/support/temp_folder.h"
#include "tests/unit/archive/signed_archive.h"
#include "tools/formats/archive_records.h"
#include "tools/formats/params_writer.h"

namespace fs = std::filesystem;

// The bytes that the hexadecimal block `name` shows.
static std::string example(const std::string& name) {
  std::string digits;
  for (const std::string& line : test::linesOf(test::formatBlock("hex", name))) {
    for (const char c : line.substr(10, 47)) {
      digits += c == ' ' ? "" : std::string(1, c);
    }
  }
  return test::bytesOfHex(digits);
}

TEST(FormatExample, OfFieldsIsReadAsTheTextSays) {
  std::string bytes = example("field");
  const Stream stream(fmemopen(bytes.data(), bytes.size(), "rb"));
  EXPECT_STREQ("Hello", Block<char>(readString(stream.get(), "first")).get());
  EXPECT_STREQ("", Block<char>(readString(stream.get(), "second")).get());
  EXPECT_EQ(42, readInt(stream.get(), "third"));
  EXPECT_TRUE(readBoolean(stream.get(), "fourth"));
  EXPECT_EQ(static_cast<long>(bytes.size()), ftell(stream.get()));
  EXPECT_EQ(test::formatBlock("hex", "field"), test::hexDump(bytes));
}

TEST(FormatExample, OfTheParamsFileIsWhatTheToolWrites) {
  const tools::Properties properties = {{"update_url", "http://127.0.0.1/"},
                                        {"show_no_ui", "true"}};
  EXPECT_EQ(test::formatBlock("hex", "params-file"),
            test::hexDump(tools::encodeParams(properties)));
  EXPECT_EQ(properties, tools::decodeParams(example("params-file")));
  const auto* marker = reinterpret_cast<const char*>(paramsMarker);
  EXPECT_EQ(std::string(marker, PARAMS_MARKER_SIZE),
            example("params-file").substr(0, PARAMS_MARKER_SIZE));
}

TEST(FormatExample, OfTheArchiveIsWhatTheToolWrites) {
  const std::string bytes =
      tools::folderRecord("lib") + tools::fileRecordHead("lib/a.txt", 6, tools::EntryKind::file) +
      "hello\n" + tools::fileRecordHead("qvArcSpBlock_Note", 2, tools::EntryKind::file) + "no";
  EXPECT_EQ(test::formatBlock("hex", "archive"), test::hexDump(bytes));
}

TEST(FormatExample, OfTheSignatureRecordIsWhatTheToolWrites) {
  const std::string archive = example("archive");
  EXPECT_EQ(test::formatBlock("hex", "signature-record"),
            test::hexDump(test::signedArchive(archive).substr(archive.size())));
}

TEST(FormatExample, OfArchiveAndSignatureRecordTogetherIsExtractedAndVerified) {
  const test::TempFolder folder;
  fs::create_directory(folder / "dest");
  test::writeFile(folder / "archive.p2", example("archive") + example("signature-record"));
  const std::vector<std::string> lines = test::logLinesOf([&] {
    extractArchive(nullptr, (folder / "archive.p2").c_str(), (folder / "dest").c_str(),
                   {test::publicKey("first"), true});
  });
  EXPECT_TRUE(test::containsInOrder(lines, {"[ExtractArchive] Archive signature verified.",
                                            "[ExtractArchive] Done extracting archive."}));
  EXPECT_EQ("hello\n", test::readFile(folder / "dest/lib/a.txt"));
  EXPECT_EQ("no", test::readFile(folder / "dest/qvArcSpBlock_Note"));
}
