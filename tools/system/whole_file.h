#ifndef QUORVANE_TOOLS_SYSTEM_WHOLE_FILE_H
#define QUORVANE_TOOLS_SYSTEM_WHOLE_FILE_H

#include <string>

#include "support/owned.h"

// Files that appear complete or not at all.

namespace tools {

// Opens `path` for reading. Throws InputError if it is not a readable regular file.
Stream openInput(const std::string& path);

// Returns the bytes of the regular file `path`. Throws InputError if it cannot be read.
std::string readWhole(const std::string& path);

// Writes a complete file with the permission bits `mode`. Throws InputError.
void writeWhole(const std::string& path, const std::string& bytes, unsigned mode = 0644);

// A new file that gets its name when it is finished. Throws InputError, with the system's reason,
// if it cannot be created, written or named; an unfinished object removes what it wrote.
class WholeFile {
 public:
  // Starts the file beside `path`, with the permission bits `mode`.
  WholeFile(const std::string& path, unsigned mode);
  ~WholeFile();
  WholeFile(const WholeFile&) = delete;
  WholeFile& operator=(const WholeFile&) = delete;

  void write(const void* data, size_t size);
  FILE* stream() { return stream_.get(); }

  // Gives the file its name, replacing an existing file.
  void finish();

 private:
  [[noreturn]] void fail(const std::string& what) const;

  std::string path_;
  std::string temporary_;
  Stream stream_;
};

// Returns the permission bits of an open file.
unsigned permissionsOf(FILE* file);

}  // namespace tools

#endif
