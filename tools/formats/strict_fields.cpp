#include "tools/formats/strict_fields.h"

#include <utility>

#include "tools/system/input_error.h"

namespace tools {

StrictFields::StrictFields(FILE* stream, std::string subject, std::string advice)
    : stream_(stream), subject_(std::move(subject)), advice_(std::move(advice)) {}

StrictFields::StrictFields(const std::string& bytes, std::string subject, std::string advice,
                           size_t start)
    : bytes_(&bytes), at_(start), subject_(std::move(subject)), advice_(std::move(advice)) {}

void StrictFields::fail(long long offset, const std::string& what) const {
  throw InputError(subject_ + " is damaged at byte " + std::to_string(offset) + ": " + what +
                   (advice_.empty() ? "" : "; " + advice_));
}

long long StrictFields::position() const {
  return stream_ != nullptr ? ftello(stream_) : static_cast<long long>(at_);
}

int StrictFields::nextByte() {
  if (stream_ != nullptr) {
    return getc(stream_);
  }
  return at_ < bytes_->size() ? static_cast<unsigned char>((*bytes_)[at_++]) : EOF;
}

bool StrictFields::isAtEnd() {
  if (stream_ == nullptr) {
    return at_ == bytes_->size();
  }
  const int next = getc(stream_);
  return next == EOF || ungetc(next, stream_) == EOF;
}

std::string StrictFields::text(const std::string& name, int limit) {
  const long long offset = position();
  const size_t longest = static_cast<size_t>(limit) - 2;
  std::string text;
  int byte = nextByte();
  for (; byte > 0; byte = nextByte()) {
    if (text.size() == longest) {
      fail(offset,
           name + " is longer than the " + std::to_string(longest) + " bytes that are read of it");
    }
    text.push_back(static_cast<char>(byte));
  }
  if (byte == EOF) {
    fail(offset, "it ends inside " + name);
  }
  return text;
}

// 18 digits fit a long.
static const size_t kMostDigits = 18;
static const int kNumberLimit = 40;

long StrictFields::toNumber(const std::string& text, size_t firstDigit, const std::string& name,
                            long long offset) const {
  const size_t digits = text.size() - firstDigit;
  if (digits == 0 || digits > kMostDigits ||
      text.find_first_not_of("0123456789", firstDigit) != std::string::npos) {
    fail(offset, name + " is '" + text + "', expected a decimal number");
  }
  return std::stol(text);
}

long StrictFields::number(const std::string& name) {
  const long long offset = position();
  return toNumber(text(name, kNumberLimit), 0, name, offset);
}

long StrictFields::signedNumber(const std::string& name) {
  const long long offset = position();
  const std::string found = text(name, kNumberLimit);
  return toNumber(found, !found.empty() && found[0] == '-' ? 1 : 0, name, offset);
}

}  // namespace tools
