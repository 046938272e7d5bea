#ifndef QUORVANE_TOOLS_FORMATS_STRICT_FIELDS_H
#define QUORVANE_TOOLS_FORMATS_STRICT_FIELDS_H

#include <cstddef>
#include <cstdio>
#include <string>

// A strict reader of the field encoding (support/encoding/field_reader.h). A packager must report
// a damaged file, so everything throws that the product's own readers put up with: a field that
// ends with the file or is too long, and a number with other characters.

namespace tools {

class StrictFields {
 public:
  // Reads at the position of `stream`, or from the byte `start` of `bytes`; either must outlive the
  // reader. `subject` names the file and `advice`, which may be empty, says what to do about it:
  // both appear in messages.
  StrictFields(FILE* stream, std::string subject, std::string advice);
  StrictFields(const std::string& bytes, std::string subject, std::string advice, size_t start = 0);

  // Returns the next field. `name` is for messages. The field has at most `limit` - 2 bytes, the
  // most that the product reads of it. Throws InputError.
  std::string text(const std::string& name, int limit);

  // Returns the next field, which must be a decimal number of at most 18 digits; that of
  // signedNumber() may begin with a '-'. Throws InputError.
  long number(const std::string& name);
  long signedNumber(const std::string& name);

  // The offset of the next byte.
  [[nodiscard]] long long position() const;

  // Returns whether nothing is left.
  [[nodiscard]] bool isAtEnd();

  // Throws InputError about the byte at `offset`.
  [[noreturn]] void fail(long long offset, const std::string& what) const;

 private:
  int nextByte();
  long toNumber(const std::string& text, size_t firstDigit, const std::string& name,
                long long offset) const;

  FILE* stream_ = nullptr;
  const std::string* bytes_ = nullptr;
  size_t at_ = 0;  // in `bytes_`
  std::string subject_;
  std::string advice_;
};

}  // namespace tools

#endif
