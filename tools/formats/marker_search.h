#ifndef QUORVANE_TOOLS_FORMATS_MARKER_SEARCH_H
#define QUORVANE_TOOLS_FORMATS_MARKER_SEARCH_H

#include <cstddef>
#include <cstdio>

namespace tools {

// Matches a marker byte by byte, as the product does: a byte that ends a partial match is not
// considered again. The marker's bytes must outlive it.
class MarkerMatcher {
 public:
  MarkerMatcher(const void* marker, size_t size)
      : marker_(static_cast<const unsigned char*>(marker)), size_(size) {}

  // Returns whether this byte completes the marker.
  [[nodiscard]] bool take(unsigned char byte) {
    begun_ = byte == marker_[begun_] ? begun_ + 1 : 0;
    return begun_ == size_;
  }

  // The number of marker bytes matched so far.
  size_t begun() const { return begun_; }

 private:
  const unsigned char* marker_;
  size_t size_;
  size_t begun_ = 0;
};

// The result of searching a stream for the Tail marker.
struct MarkerSearch {
  bool found = false;    // the stream is then at the first byte after the marker
  long long offset = 0;  // of that byte
  size_t begun = 0;      // marker bytes matched at the end of the stream
};

// Searches for the Tail marker from the stream's position.
MarkerSearch searchMarker(FILE* stream);

}  // namespace tools

#endif
