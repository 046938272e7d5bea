#ifndef QUORVANE_TOOLS_FORMATS_FIELD_WRITER_H
#define QUORVANE_TOOLS_FORMATS_FIELD_WRITER_H

#include <string>

// Writers of the field encoding that support/encoding/field_reader.h reads: each field's bytes
// followed by one zero byte.

namespace tools {

// Appends `text` as one field to `out`. Throws InputError, naming the field, if the text contains a
// zero byte or is longer than `limit` - 2 bytes, the most that its reader accepts completely.
void appendField(std::string* out, const std::string& name, const std::string& text, int limit);

// Appends a decimal number as one field.
void appendNumber(std::string* out, long value);

}  // namespace tools

#endif
