#ifndef QUORVANE_TOOLS_FORMATS_INSTALLER_STREAM_H
#define QUORVANE_TOOLS_FORMATS_INSTALLER_STREAM_H

#include <string>

#include "support/owned.h"

namespace tools {

// The records that follow the Tail's fields in an installer, read one by one.
class InstallerStream {
 public:
  // Starts at the byte `offset` of the file `path`. Throws InputError.
  InstallerStream(const std::string& path, long long offset);

  // Reads the next record, writes its data to the new file `out` and returns its name; an empty
  // name and no file for the empty record, which keeps the place of one that is not there. Throws
  // InputError when the stream is cut short or holds something else.
  std::string next(const std::string& out);

  // Bytes that have not been read.
  long long bytesLeft();

 private:
  std::string readField(const char* what);
  long long readLength(const std::string& name);

  std::string path_;
  Stream stream_;
  long long size_;
};

}  // namespace tools

#endif
