#ifndef QUORVANE_TESTS_UNIT_ARCHIVE_ARCHIVE_FIXTURE_H
#define QUORVANE_TESTS_UNIT_ARCHIVE_ARCHIVE_FIXTURE_H

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "archive/trust.h"
#include "tests/support/capture.h"
#include "tests/support/files.h"
#include "tests/support/temp_folder.h"

namespace test {

// Records of an archive, byte for byte.
std::string folderRecord(const std::string& path);
std::string fileRecord(const std::string& path, const std::string& data,
                       const std::string& type = "0");
std::string recordHead(const std::string& type, const std::string& path, const std::string& length);
std::string signatureRecord(const std::string& signedLength, const std::string& hex);

// Fake tools for unpack200 and lzma64; both take input and output as their last two
// arguments. Their output is the input between angle brackets.
constexpr char WORKING_TOOL[] = "{ printf '<'; cat \"$in\"; printf '>'; } > \"$out\"";
constexpr char FAILING_TOOL[] = "printf half > \"$out\"; exit 3";
constexpr char KILLED_TOOL[] = "printf half > \"$out\"; kill -9 $$";
constexpr char SILENT_TOOL[] = "exit 0";

struct RecordResult {
  int value = 0;
  long signedLength = 0;
  std::string signatureHex;
  std::vector<std::string> lines;
};

// A destination folder beside an archive file and fake tools.
class ArchiveTest : public testing::Test {
 protected:
  ArchiveTest();
  ~ArchiveTest() override;

  // Extracts `bytes` as a whole archive in this process; the archive lies at archivePath().
  std::vector<std::string> extract(const std::string& bytes);
  // The same in a child process, since it ends.
  Result extractInChild(const std::string& bytes);
  // Reads one record from `bytes` with the given tools (null: none) in this process.
  RecordResult readRecord(const std::string& bytes, const char* lzmaExe = nullptr);
  Result readRecordInChild(const std::string& bytes, const char* lzmaExe = nullptr);

  // Makes an executable script of `body`, which sees its input and output as $in and $out.
  std::string makeTool(const std::string& name, const std::string& body);

  std::string archivePath() const { return folder_ / "archive.p2"; }
  std::string dest() const { return folder_ / "dest"; }
  std::string inDest(const std::string& name) const { return dest() + "/" + name; }
  std::string beside(const std::string& name) const { return folder_ / name; }

  std::string unpack200_;    // path of the unpack200 tool; empty for none
  Rsa_key* key_ = nullptr;   // what signatures are checked with
  bool isRequired_ = false;  // whether there has to be one

 private:
  Trust trust() const { return {key_, isRequired_}; }
  const char* unpack200() const { return unpack200_.empty() ? nullptr : unpack200_.c_str(); }

  TempFolder folder_;
};

}  // namespace test

#endif
