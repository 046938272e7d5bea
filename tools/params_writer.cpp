#include "tools/params_writer.h"

#include <cstdlib>

#include "extractor/params_file.h"
#include "tools/field_writer.h"
#include "tools/input_error.h"

namespace tools {

static const int kNameLimit = 1024;
static const int kValueLimit = 200000;

static std::string marker() {
  return {reinterpret_cast<const char*>(paramsMarker), sizeof paramsMarker};
}

std::string encodeParams(const Properties& properties) {
  std::string bytes = marker();
  appendNumber(&bytes, static_cast<long>(properties.size()));
  for (const auto& [name, value] : properties) {
    if (name.empty()) {
      throw InputError("a property has no name; give it one");
    }
    appendField(&bytes, "the property name " + name, name, kNameLimit);
    appendField(&bytes, "the property " + name, value, kValueLimit);
  }
  return bytes;
}

// Takes the field at `*at` and moves on behind it.
static std::string takeField(const std::string& bytes, size_t* at, const char* what) {
  const size_t end = bytes.find('\0', *at);
  if (end == std::string::npos) {
    throw InputError(std::string("the params file ends inside ") + what);
  }
  const std::string text = bytes.substr(*at, end - *at);
  *at = end + 1;
  return text;
}

Properties decodeParams(const std::string& bytes) {
  const size_t start = bytes.find(marker());
  if (start == std::string::npos) {
    throw InputError("this is no params file: its marker is missing");
  }
  size_t at = start + PARAMS_MARKER_SIZE;
  const std::string count = takeField(bytes, &at, "the number of properties");
  if (count.empty() || count.find_first_not_of("0123456789") != std::string::npos) {
    throw InputError("the number of properties is '" + count + "'; expected a decimal number");
  }
  Properties properties;
  const long pairs = atol(count.c_str());
  for (long i = 0; i < pairs; ++i) {
    std::string name = takeField(bytes, &at, "a property's name");
    std::string value = takeField(bytes, &at, "a property's value");
    properties.emplace_back(std::move(name), std::move(value));
  }
  return properties;
}

}  // namespace tools
