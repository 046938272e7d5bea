#ifndef QUORVANE_TESTS_FUZZ_FIELD_MODEL_H
#define QUORVANE_TESTS_FUZZ_FIELD_MODEL_H

#include <cstddef>
#include <string>

namespace fuzz {

// A second reader of the field encoding, over bytes in memory. It says what the product's reader,
// which stands at the same place of a stream of the same bytes, must give.
class FieldModel {
 public:
  explicit FieldModel(std::string bytes) : bytes_(std::move(bytes)) {}

  // Moves past the place where the search finds `marker`, or to the end if it finds none.
  // Returns the number of bytes passed, or -1.
  int skipTo(const std::string& marker);

  // Returns what a reader with `limit` gives for the next field, and moves past what it reads.
  std::string takeField(size_t limit);

  // Returns the next number, and moves past what is read of it.
  long takeNumber();

  size_t position() const { return position_; }

  // Whether every byte was read; whether a reader has looked beyond the last one.
  bool isAtEnd() const { return position_ == bytes_.size(); }
  bool hasMetEnd() const { return hasMetEnd_; }

 private:
  std::string bytes_;
  size_t position_ = 0;
  bool hasMetEnd_ = false;
};

}  // namespace fuzz

#endif
