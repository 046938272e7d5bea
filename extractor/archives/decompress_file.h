#ifndef QUORVANE_EXTRACTOR_ARCHIVES_DECOMPRESS_FILE_H
#define QUORVANE_EXTRACTOR_ARCHIVES_DECOMPRESS_FILE_H

#include "support/failure/failure.h"

// Decompresses the file `compressed` into `archive`, at which nothing stands yet, with the LZMA
// tool `lzmaTool`. Returns whether that made a plain file; else `*failure` says why not. Logs what
// running a program logs. Main thread.
[[nodiscard]] bool decompressFile(const char* lzmaTool, const char* compressed, const char* archive,
                                  Failure* failure);

#endif
