#include "tools/formats/archive_records.h"

#include "archive/entry.h"
#include "archive/entry_path.h"
#include "support/encoding/field_reader.h"
#include "tools/formats/field_writer.h"
#include "tools/system/input_error.h"

namespace tools {

static const char* typeOf(EntryKind kind) {
  switch (kind) {
    case EntryKind::folder:
      return "1";
    case EntryKind::pack200:
      return "2";
    case EntryKind::file:
      break;
  }
  return "0";
}

static std::string typeAndPath(EntryKind kind, const std::string& path) {
  if (const char* fault = entryPathError(path.c_str())) {
    throw InputError("the entry " + path + " would not be extracted: " + fault);
  }
  std::string record;
  appendField(&record, "the entry's type", typeOf(kind), DEFAULT_FIELD_LIMIT);
  appendField(&record, "the entry's path " + path, path, DEFAULT_FIELD_LIMIT);
  return record;
}

std::string folderRecord(const std::string& path) {
  return typeAndPath(EntryKind::folder, path);
}

std::string fileRecordHead(const std::string& path, long length, EntryKind kind) {
  if (path == SIGNATURE_RECORD_PATH) {
    throw InputError("the name " + path + " is reserved for the signature; rename the file");
  }
  std::string record = typeAndPath(kind, path);
  appendNumber(&record, length);
  return record;
}

std::string signatureRecord(long signedLength, const std::string& signatureHex) {
  std::string data;
  appendNumber(&data, signedLength);
  appendField(&data, "the signature", signatureHex, SIGNATURE_HEX_LIMIT);
  std::string record = typeAndPath(EntryKind::file, SIGNATURE_RECORD_PATH);
  appendNumber(&record, static_cast<long>(data.size()));
  return record + data;
}

}  // namespace tools
