#ifndef QUORVANE_TESTS_MACOS_RUN_DARWIN_STREAMS_H
#define QUORVANE_TESTS_MACOS_RUN_DARWIN_STREAMS_H

#include <cstddef>
#include <cstdio>

namespace macrun {

// FILE, as <_stdio.h> describes it. The counts of what is left in the buffer stay 0, so that the
// getc() and putc() which are compiled into an executable call __srget() and __swbuf().
struct DarwinStream {
  unsigned char* position;
  int leftToRead, leftToWrite;
  short flags, handle;
  char rest[128];
  FILE* file;  // Linux's, after Darwin's record
};
static_assert(offsetof(DarwinStream, leftToRead) == 8 && offsetof(DarwinStream, flags) == 16 &&
              offsetof(DarwinStream, file) == 152);

// Returns a new record for `file`, or nullptr for nullptr; dropStream() ends it.
DarwinStream* wrapStream(FILE* file);
void dropStream(DarwinStream* stream);

// Linux's stream after the record.
FILE* fileOf(DarwinStream* stream);

}  // namespace macrun

#endif
