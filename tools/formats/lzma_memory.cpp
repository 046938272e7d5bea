#include <lzma.h>

#include "tools/formats/lzma.h"

namespace tools {

// Not beside the coders: lzma64 has no use for it.
uint64_t lzmaCompressionMemory() {
  lzma_options_lzma options;
  lzma_lzma_preset(&options, LZMA_PRESET);
  const lzma_filter filters[] = {{LZMA_FILTER_LZMA1, &options}, {LZMA_VLI_UNKNOWN, nullptr}};
  return lzma_raw_encoder_memusage(filters);
}

}  // namespace tools
