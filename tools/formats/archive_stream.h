#ifndef QUORVANE_TOOLS_FORMATS_ARCHIVE_STREAM_H
#define QUORVANE_TOOLS_FORMATS_ARCHIVE_STREAM_H

#include <string>

#include "crypto/mixed_hash.h"
#include "support/owned.h"
#include "tools/formats/archive_records.h"
#include "tools/keys/signing.h"
#include "tools/system/whole_file.h"

namespace tools {

// Writes an archive record by record, and hashes it on the way.
class ArchiveStream {
 public:
  explicit ArchiveStream(const std::string& path);

  void addFolder(const std::string& path);
  // Adds the bytes of the file `source`.
  void addFile(const std::string& path, const std::string& source, EntryKind kind);
  // Signs what has been written; nothing may be added afterwards.
  void sign(const SigningKey& key);
  // Gives the archive its name.
  void finish() { file_.finish(); }

 private:
  void append(const void* data, size_t size);

  WholeFile file_;
  Block<Hash_state> hash_;
  long size_ = 0;
};

}  // namespace tools

#endif
