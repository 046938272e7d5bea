#ifndef QUORVANE_TOOLS_FORMATS_INSTALLER_STREAM_H
#define QUORVANE_TOOLS_FORMATS_INSTALLER_STREAM_H

#include <string>

#include "support/owned.h"
#include "tools/formats/strict_fields.h"

namespace tools {

// Reads the records that follow the Tail's fields in an installer, one by one.
class InstallerStream {
 public:
  // Starts at the byte `offset` of the file `path`. Throws InputError.
  InstallerStream(const std::string& path, long long offset);

  // Reads the next record, writes its data to the new file `out` and returns its name; for the
  // empty record, which stands for a missing one, returns an empty name and writes no file. Throws
  // InputError if the stream is truncated or contains something else.
  std::string next(const std::string& out);

  // Number of bytes not yet read.
  long long bytesLeft();

 private:
  long long readLength(const std::string& name);

  std::string path_;
  Stream stream_;
  StrictFields fields_;
  long long size_;
};

}  // namespace tools

#endif
