#ifndef QUORVANE_EXTRACTOR_ARCHIVES_DECOMPRESS_FILE_H
#define QUORVANE_EXTRACTOR_ARCHIVES_DECOMPRESS_FILE_H

#include "support/failure/failure.h"

// Decompresses the file `compressed` into `archive`, which must not exist yet, with the LZMA tool
// `lzmaTool`. Returns whether that made a regular file; otherwise `*failure` gives the reason. Logs
// only the running of the program. Main thread.
[[nodiscard]] bool decompressFile(const char* lzmaTool, const char* compressed, const char* archive,
                                  Failure* failure);

#endif
