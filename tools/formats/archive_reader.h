#ifndef QUORVANE_TOOLS_FORMATS_ARCHIVE_READER_H
#define QUORVANE_TOOLS_FORMATS_ARCHIVE_READER_H

#include <string>
#include <vector>

#include "crypto/signature.h"
#include "tools/formats/archive_records.h"

// Reads archives without writing anything, and checks their signature strictly.

namespace tools {

struct ArchiveEntry {
  EntryKind kind = EntryKind::file;
  std::string path;
  long length = 0;  // 0 for a folder
  long offset = 0;  // where its data begin, in bytes
};

struct ArchiveListing {
  std::vector<ArchiveEntry> entries;
  bool isSigned = false;
  long signedLength = -1;      // what the signature record says it covers
  long recordOffset = 0;       // where the record begins
  bool isWrittenForm = false;  // whether the record has the one form that the writer gives it
  std::string signatureHex;
};

// Reads the uncompressed archive `path` up to its signature record or end. Throws InputError, with
// the offset, at the first thing that the product would not extract or that the writer never
// writes, including bytes after the signature. `name` is the archive's name in messages.
ArchiveListing readArchive(const std::string& path, const std::string& name);

// Checks the signature of the archive `path` as the product does when it requires one, and also
// that the record is in the writer's form, which the product does not require. Throws InputError
// with the reason if it is not valid.
void checkSignature(const std::string& path, const std::string& name, const ArchiveListing& listing,
                    Rsa_key* key);

}  // namespace tools

#endif
