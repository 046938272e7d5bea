#ifndef QUORVANE_TOOLS_FORMATS_ARCHIVE_RECORDS_H
#define QUORVANE_TOOLS_FORMATS_ARCHIVE_RECORDS_H

#include <string>

// The bytes of an archive's records, as archive/archive.h reads them and docs/formats.md shows
// them. A stream that installers read record by record is made of the same.

namespace tools {

enum class EntryKind { folder, pack200, file };

// What the path of a special block begins with.
constexpr char SPECIAL_BLOCK_PREFIX[] = "qvArcSpBlock_";

// Returns the whole record of a folder. Throws InputError when the path is not one that the product
// extracts.
std::string folderRecord(const std::string& path);

// Returns what stands before the `length` data bytes of an entry that is no folder. Throws
// InputError as folderRecord() does, and when the path is the signature record's.
std::string fileRecordHead(const std::string& path, long length, EntryKind kind);

// Returns the record that signs the `signedLength` bytes before it.
std::string signatureRecord(long signedLength, const std::string& signatureHex);

}  // namespace tools

#endif
