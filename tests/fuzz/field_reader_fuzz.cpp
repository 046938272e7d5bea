// The field encoding: the marker search and the readers take exactly the bytes that they should.

#include <cstdio>
#include <string>

#include "support/encoding/field_reader.h"
#include "support/owned.h"
#include "tests/fuzz/field_model.h"
#include "tests/fuzz/fuzz_target.h"

// Reads `bytes` the way the product does, beside the model that says what must come.
namespace {

class Reading {
 public:
  explicit Reading(const std::string& bytes)
      : model_(bytes), stream_(fmemopen(const_cast<char*>(bytes.data()), bytes.size(), "rb")) {}

  void scan(const std::string& marker) {
    const int consumed =
        scanToMarker(stream_.get(), marker.data(), static_cast<int>(marker.size()), "Fuzz");
    fuzz::require(consumed == model_.skipTo(marker),
                  "the marker is found where it ends, or not at all");
  }

  void readField(size_t limit) {
    const std::string wanted = model_.takeField(limit);
    const Block<char> text(readString(stream_.get(), "Field", static_cast<int>(limit)));
    fuzz::require(wanted == text.get(), "the field holds the bytes up to its end");
    fuzz::require(static_cast<size_t>(ftell(stream_.get())) == model_.position(),
                  "and no more were read");
  }

  void readNumber() {
    fuzz::require(readInt(stream_.get(), "Number") == model_.takeNumber(), "the same number");
  }

  bool isAtEnd() const { return model_.isAtEnd(); }

 private:
  fuzz::FieldModel model_;
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
