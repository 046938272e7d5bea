#include "tools/java/inflate.h"

#include <zlib.h>

#include <array>
#include <limits>

#include "tools/system/input_error.h"

namespace tools {

namespace {

class Inflater {
 public:
  explicit Inflater(std::string_view data) {
    constexpr int kWithoutHeader = -MAX_WBITS;
    // zlib counts in unsigned int. It does not write to its input, which it wants non-const.
    if (data.size() > std::numeric_limits<uInt>::max() ||
        inflateInit2(&stream_, kWithoutHeader) != Z_OK) {
      throw InputError("the compressed data is too large");
    }
    stream_.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(data.data()));
    stream_.avail_in = static_cast<uInt>(data.size());
  }
  ~Inflater() { inflateEnd(&stream_); }
  Inflater(const Inflater&) = delete;
  Inflater& operator=(const Inflater&) = delete;

  // Appends what comes next to `out`. Returns false at the end.
  bool next(std::string* out) {
    stream_.next_out = chunk_.data();
    stream_.avail_out = static_cast<uInt>(chunk_.size());
    const int result = ::inflate(&stream_, Z_NO_FLUSH);
    if (result == Z_BUF_ERROR) {
      throw InputError("the compressed data ends too early");
    }
    if (result != Z_OK && result != Z_STREAM_END) {
      throw InputError("the compressed data is damaged");
    }
    out->append(reinterpret_cast<const char*>(chunk_.data()), chunk_.size() - stream_.avail_out);
    return result != Z_STREAM_END;
  }

 private:
  z_stream stream_{};
  std::array<Bytef, 16384> chunk_;
};

}  // namespace

std::string inflate(std::string_view data, size_t most) {
  std::string text;
  Inflater inflater(data);
  bool hasMore = true;
  while (hasMore) {
    hasMore = inflater.next(&text);
    if (text.size() > most) {
      throw InputError("it has more than " + std::to_string(most) + " bytes");
    }
  }
  return text;
}

}  // namespace tools
