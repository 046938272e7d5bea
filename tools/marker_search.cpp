#include "tools/marker_search.h"

#include "launcher/tail_marker.h"
#include "support/owned.h"

namespace tools {

MarkerSearch searchMarker(FILE* stream) {
  const Block<char> wanted(allocAndInitMarker());
  MarkerSearch search;
  for (int byte = getc_unlocked(stream); byte != EOF; byte = getc_unlocked(stream)) {
    ++search.offset;
    const bool fits = byte == static_cast<unsigned char>(wanted.get()[search.begun]);
    search.begun = fits ? search.begun + 1 : 0;
    if (search.begun == TAIL_MARKER_SIZE) {
      search.found = true;
      break;
    }
  }
  return search;
}

}  // namespace tools
