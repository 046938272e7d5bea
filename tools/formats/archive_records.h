#ifndef QUORVANE_TOOLS_FORMATS_ARCHIVE_RECORDS_H
#define QUORVANE_TOOLS_FORMATS_ARCHIVE_RECORDS_H

#include <string>

// The bytes of an archive's records, as read by archive/archive.h and shown in docs/formats.md. The
// stream that installers read record by record consists of the same records.

namespace tools {

enum class EntryKind { folder, pack200, file };

// The prefix of a special block's path.
constexpr char SPECIAL_BLOCK_PREFIX[] = "qvArcSpBlock_";

// Returns the complete record of a folder. Throws InputError if the product would not extract the
// path.
std::string folderRecord(const std::string& path);

// Returns the fields before the `length` data bytes of an entry that is not a folder. Throws
// InputError as folderRecord() does, and if the path is the signature record's.
std::string fileRecordHead(const std::string& path, long length, EntryKind kind);

// Returns the record that signs the `signedLength` bytes before it.
std::string signatureRecord(long signedLength, const std::string& signatureHex);

}  // namespace tools

#endif
