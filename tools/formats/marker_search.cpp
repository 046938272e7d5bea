#include "tools/formats/marker_search.h"

#include "formats/tail_marker.h"
#include "support/owned.h"

namespace tools {

MarkerSearch searchMarker(FILE* stream) {
  const Block<char> wanted(allocAndInitMarker());
  MarkerMatcher matcher(wanted.get(), TAIL_MARKER_SIZE);
  MarkerSearch search;
  for (int byte = getc_unlocked(stream); byte != EOF; byte = getc_unlocked(stream)) {
    ++search.offset;
    if (matcher.take(static_cast<unsigned char>(byte))) {
      search.found = true;
      break;
    }
  }
  search.begun = matcher.begun();
  return search;
}

}  // namespace tools
