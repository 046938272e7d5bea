// The field encoding: the marker search and the readers take exactly the bytes that they should.

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "launcher/field_reader.h"
#include "support/owned.h"
#include "tests/fuzz/fuzz_target.h"

// Reads `bytes` the way the product does, beside a position that says what must be left.
namespace {

class Reading {
 public:
  explicit Reading(const std::string& bytes)
      : bytes_(bytes), stream_(fmemopen(const_cast<char*>(bytes.data()), bytes.size(), "rb")) {}

  void scan(const std::string& marker) {
    const size_t end = endOfMarker(marker);
    const int consumed =
        scanToMarker(stream_.get(), marker.data(), static_cast<int>(marker.size()), "Fuzz");
    fuzz::require(consumed == (end == std::string::npos ? -1 : static_cast<int>(end)),
                  "the marker is found where it ends, or not at all");
    position_ = std::min(end, bytes_.size());
  }

  void readField(size_t limit) {
    const std::string wanted = takeField(limit);
    const Block<char> text(readString(stream_.get(), "Field", static_cast<int>(limit)));
    fuzz::require(wanted == text.get(), "the field holds the bytes up to its end");
    fuzz::require(static_cast<size_t>(ftell(stream_.get())) == position_, "and no more were read");
  }

  void readNumber() {
    const std::string wanted = takeField(NUMBER_FIELD_LIMIT);
    fuzz::require(readInt(stream_.get(), "Number") == atol(wanted.c_str()), "the same number");
  }

  bool isAtEnd() const { return position_ == bytes_.size(); }

 private:
  size_t endOfMarker(const std::string& marker) const {
    size_t matched = 0;
    for (size_t i = 0; i < bytes_.size() && matched < marker.size(); ++i) {
      matched = bytes_[i] == marker[matched] ? matched + 1 : 0;
      if (matched == marker.size()) {
        return i + 1;
      }
    }
    return marker.empty() ? 0 : std::string::npos;
  }

  // Moves the position behind the next field and returns what a reader with `limit` gives for it.
  std::string takeField(size_t limit) {
    const size_t end = std::min(bytes_.find('\0', position_), bytes_.size());
    const std::string field = bytes_.substr(position_, end - position_);
    const bool isTooLong = field.size() >= limit - 1;
    position_ = isTooLong ? position_ + limit - 1 : std::min(end + 1, bytes_.size());
    return isTooLong ? field.substr(0, limit - 1) : field;
  }

  const std::string& bytes_;
  size_t position_ = 0;
  Stream stream_;
};

}  // namespace

// The first byte gives the fields' limit, the second the marker's length; the marker follows, then
// the stream.
int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size < 3 || size - 3 < data[1] || size > 4096) {
    return 0;
  }
  const size_t limit = data[0] + size_t{2};
  const std::string marker(reinterpret_cast<const char*>(data + 2), data[1]);
  const std::string bytes(reinterpret_cast<const char*>(data + 2 + data[1]), size - 2 - data[1]);
  Reading reading(bytes);
  reading.scan(marker);
  for (int i = 0; i < 20 && !reading.isAtEnd(); ++i) {
    reading.readField(limit);
    reading.readNumber();
  }
  return 0;
}
