#ifndef QUORVANE_TOOLS_FORMATS_ARCHIVE_READER_H
#define QUORVANE_TOOLS_FORMATS_ARCHIVE_READER_H

#include <string>
#include <vector>

#include "crypto/signature.h"
#include "tools/formats/archive_records.h"

// A look into archives that writes nothing, and the strict check of their signature.

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

// Reads the archive `path`, not compressed, to its signature record or end. Throws InputError, with
// the offset, at the first thing that the product would not extract or that the writer never
// writes, bytes behind the signature included. `name` is what messages call the archive.
ArchiveListing readArchive(const std::string& path, const std::string& name);

// Checks the signature of the archive `path` as the product does when it requires one, and that the
// record has the form that the writer gives it, which the product does not ask for. Throws
// InputError, saying why, when it is not right.
void checkSignature(const std::string& path, const std::string& name, const ArchiveListing& listing,
                    Rsa_key* key);

}  // namespace tools

#endif
