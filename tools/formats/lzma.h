#ifndef QUORVANE_TOOLS_FORMATS_LZMA_H
#define QUORVANE_TOOLS_FORMATS_LZMA_H

#include <string>

// Files in the LZMA-alone format, the one that entries and archives with the suffix ".l2" have.
// Both functions write a new file beside `out` and give it the name `out` once it is whole, with
// the permissions of `in`: at no time does `out` name a part of the result, and after a failure it
// names what it named before. They throw InputError when a file cannot be read or written.

namespace tools {

// Compresses `in` to `out`. The same input gives the same bytes.
void lzmaCompress(const std::string& in, const std::string& out);

// Decompresses `in` to `out`. Throws InputError when `in` is damaged, cut short, goes on behind its
// end, or asks for more than 512 MiB of memory. The format has no checksum; a change that it cannot
// notice by itself is the signature's to find.
void lzmaDecompress(const std::string& in, const std::string& out);

}  // namespace tools

#endif
