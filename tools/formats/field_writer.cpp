#include "tools/formats/field_writer.h"

#include "tools/system/input_error.h"

namespace tools {

void appendField(std::string* out, const std::string& name, const std::string& text, int limit) {
  if (text.find('\0') != std::string::npos) {
    throw InputError(name + " contains a zero byte, which ends a field; remove it");
  }
  const size_t longest = static_cast<size_t>(limit) - 2;
  if (text.size() > longest) {
    throw InputError(name + " is " + std::to_string(text.size()) + " bytes long, at most " +
                     std::to_string(longest) + " are read; shorten it");
  }
  out->append(text).push_back('\0');
}

void appendNumber(std::string* out, long value) {
  out->append(std::to_string(value)).push_back('\0');
}

}  // namespace tools
