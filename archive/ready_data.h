#ifndef QUORVANE_ARCHIVE_READY_DATA_H
#define QUORVANE_ARCHIVE_READY_DATA_H

#include <sys/types.h>

// What the LZMA tool has made of an entry's data before the entry's turn. The paths are the
// caller's; both files are on the destination's file system.
struct ReadyData {
  const char* compressed;  // a file with the entry's data
  const char* data;        // what the tool made of it; the extraction moves it into place
  long length;             // of the compressed data, in bytes
  pid_t child;             // the tool's process
  int status;              // its wait status, which says that it succeeded
};

#endif
