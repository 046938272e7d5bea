#include "tests/fuzz/field_model.h"

#include <cstdlib>

#include "support/encoding/field_reader.h"

namespace fuzz {

int FieldModel::skipTo(const std::string& marker) {
  size_t matched = 0;
  while (matched < marker.size()) {
    if (isAtEnd()) {
      hasMetEnd_ = true;
      return -1;
    }
    matched = bytes_[position_] == marker[matched] ? matched + 1 : 0;
    ++position_;
  }
  return static_cast<int>(position_);
}

std::string FieldModel::takeField(size_t limit) {
  const size_t zero = bytes_.find('\0', position_);
  const size_t end = zero == std::string::npos ? bytes_.size() : zero;
  const std::string field = bytes_.substr(position_, end - position_);
  if (field.size() >= limit - 1) {
    position_ += limit - 1;
    return field.substr(0, limit - 1);
  }
  hasMetEnd_ = hasMetEnd_ || zero == std::string::npos;
  position_ = zero == std::string::npos ? bytes_.size() : zero + 1;
  return field;
}

long FieldModel::takeNumber() {
  return atol(takeField(NUMBER_FIELD_LIMIT).c_str());
}

}  // namespace fuzz
