#include "tests/unit/archive/archive_fixture.h"

#include <filesystem>

#include "archive/archive.h"
#include "support/owned.h"

namespace fs = std::filesystem;

namespace test {

std::string recordHead(const std::string& type, const std::string& path,
                       const std::string& length) {
  return field(type) + field(path) + field(length);
}

std::string folderRecord(const std::string& path) {
  return field("1") + field(path);
}

std::string fileRecord(const std::string& path, const std::string& data, const std::string& type) {
  return recordHead(type, path, std::to_string(data.size())) + data;
}

std::string signatureRecord(const std::string& signedLength, const std::string& hex) {
  return recordHead("0", "qvArcSpBlock_DigitalSignature1", "0") + field(signedLength) + field(hex);
}

ArchiveTest::ArchiveTest() {
  fs::create_directory(dest());
}

ArchiveTest::~ArchiveTest() {
  pack200EntryMet = false;
}

std::vector<std::string> ArchiveTest::extract(const std::string& bytes) {
  writeFile(archivePath(), bytes);
  return logLinesOf([&] {
    EXPECT_EQ(0, extractArchive(unpack200(), archivePath().c_str(), dest().c_str(), trust()));
  });
}

Result ArchiveTest::extractInChild(const std::string& bytes) {
  writeFile(archivePath(), bytes);
  return runInChild(
      [&] { extractArchive(unpack200(), archivePath().c_str(), dest().c_str(), trust()); });
}

RecordResult ArchiveTest::readRecord(const std::string& bytes, const char* lzmaExe) {
  writeFile(archivePath(), bytes);
  RecordResult result;
  result.lines = logLinesOf([&] {
    const Stream stream(fopen(archivePath().c_str(), "rb"));
    char* hex = nullptr;
    result.signedLength = -1;
    result.value = extractArchiveFileCheckSignature(
        lzmaExe, unpack200(), dest().c_str(), stream.get(), &result.signedLength, &hex, trust());
    const Block<char> owned(hex);
    result.signatureHex = hex == nullptr ? "none" : hex;
  });
  return result;
}

Result ArchiveTest::readRecordInChild(const std::string& bytes, const char* lzmaExe) {
  return runInChild([&] { readRecord(bytes, lzmaExe); });
}

std::string ArchiveTest::makeTool(const std::string& name, const std::string& body) {
  const std::string head = "#!/bin/sh\n[ $# -eq 2 ] || shift\nin=$1\nout=$2\n";
  writeFile(folder_ / name, head + body + "\n", 0755);
  return folder_ / name;
}

}  // namespace test
