#ifndef QUORVANE_TOOLS_FORMATS_MARKER_SEARCH_H
#define QUORVANE_TOOLS_FORMATS_MARKER_SEARCH_H

#include <cstddef>
#include <cstdio>

namespace tools {

// Meets a marker in bytes that are taken one by one, as the product does: a byte that breaks a
// beginning is not looked at again. The marker's bytes have to outlive it.
class MarkerMatcher {
 public:
  MarkerMatcher(const void* marker, size_t size)
      : marker_(static_cast<const unsigned char*>(marker)), size_(size) {}

  // Returns whether the marker is whole with this byte.
  [[nodiscard]] bool take(unsigned char byte) {
    begun_ = byte == marker_[begun_] ? begun_ + 1 : 0;
    return begun_ == size_;
  }

  // How many bytes of the marker the last ones were.
  size_t begun() const { return begun_; }

 private:
  const unsigned char* marker_;
  size_t size_;
  size_t begun_ = 0;
};

// How the search for the Tail marker went over a stream.
struct MarkerSearch {
  bool found = false;    // the stream then stands at the first byte behind the marker
  long long offset = 0;  // of that byte
  size_t begun = 0;      // bytes of the marker that the end of the stream has cut off
};

// Searches the Tail marker from where the stream stands.
MarkerSearch searchMarker(FILE* stream);

}  // namespace tools

#endif
