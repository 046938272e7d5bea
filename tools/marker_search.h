#ifndef QUORVANE_TOOLS_MARKER_SEARCH_H
#define QUORVANE_TOOLS_MARKER_SEARCH_H

#include <cstdio>

namespace tools {

// How the search for the Tail marker went over a stream.
struct MarkerSearch {
  bool found = false;    // the stream then stands at the first byte behind the marker
  long long offset = 0;  // of that byte
  int begun = 0;         // bytes of the marker that the end of the stream has cut off
};

// Searches as the product does: a byte that breaks a beginning is not looked at again.
MarkerSearch searchMarker(FILE* stream);

}  // namespace tools

#endif
