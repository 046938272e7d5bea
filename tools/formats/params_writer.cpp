#include "tools/formats/params_writer.h"

#include <algorithm>
#include <cstdlib>

#include "extractor/run/params_file.h"
#include "support/encoding/field_reader.h"
#include "tools/formats/field_writer.h"
#include "tools/formats/marker_search.h"
#include "tools/system/input_error.h"

namespace tools {

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
    appendField(&bytes, "the property name " + name, name, DEFAULT_FIELD_LIMIT);
    appendField(&bytes, "the property " + name, value, PARAM_VALUE_LIMIT);
  }
  return bytes;
}

// Returns the field at `*at` and advances past it.
static std::string takeField(const std::string& bytes, size_t* at, const char* what) {
  const size_t end = bytes.find('\0', *at);
  if (end == std::string::npos) {
    throw InputError(std::string("the params file ends inside ") + what);
  }
  const std::string text = bytes.substr(*at, end - *at);
  *at = end + 1;
  return text;
}

// Returns the position after the marker.
static size_t endOfMarker(const std::string& bytes) {
  MarkerMatcher matcher(paramsMarker, sizeof paramsMarker);
  for (size_t i = 0; i < bytes.size(); ++i) {
    if (matcher.take(static_cast<unsigned char>(bytes[i]))) {
      return i + 1;
    }
  }
  throw InputError("this is not a params file: its marker is missing");
}

Properties decodeParams(const std::string& bytes) {
  size_t at = endOfMarker(bytes);
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

// Removes all properties called `name` from `begin` on and returns whether there were any.
static bool removeFrom(Properties* properties, Properties::iterator begin,
                       const std::string& name) {
  const auto end = std::remove_if(begin, properties->end(),
                                  [&](const auto& property) { return property.first == name; });
  const bool isFound = end != properties->end();
  properties->erase(end, properties->end());
  return isFound;
}

void setProperty(Properties* properties, const std::string& name, const std::string& value) {
  const auto first = std::find_if(properties->begin(), properties->end(),
                                  [&](const auto& property) { return property.first == name; });
  if (first == properties->end()) {
    properties->emplace_back(name, value);
    return;
  }
  first->second = value;
  removeFrom(properties, first + 1, name);
}

void unsetProperty(Properties* properties, const std::string& name) {
  if (!removeFrom(properties, properties->begin(), name)) {
    throw InputError("there is no property " + name + " to remove");
  }
}

}  // namespace tools
