#ifndef QUORVANE_TOOLS_FORMATS_LZMA_H
#define QUORVANE_TOOLS_FORMATS_LZMA_H

#include <cstdint>
#include <string>

// Files in the LZMA-alone format, which entries and archives with the suffix ".l2" have. Both
// functions write a new file beside `out` and rename it to `out` when complete, with the
// permissions of `in`: `out` is never a partial result, and after a failure it is unchanged. They
// throw InputError if a file cannot be read or written.

namespace tools {

// The preset of all compressions.
constexpr uint32_t LZMA_PRESET = 6;

// The bytes of memory that a compression takes, besides its buffers.
uint64_t lzmaCompressionMemory();

// Compresses `in` to `out`. The same input gives the same bytes.
void lzmaCompress(const std::string& in, const std::string& out);

// Decompresses `in` to `out`. Throws InputError if `in` is damaged, truncated, continues after its
// end, or needs more than 512 MiB of memory. The format has no checksum; finding a change that it
// cannot detect is left to the signature.
void lzmaDecompress(const std::string& in, const std::string& out);

}  // namespace tools

#endif
