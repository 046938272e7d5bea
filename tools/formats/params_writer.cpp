#include "tools/formats/params_writer.h"

#include <algorithm>
#include <climits>

#include "formats/params_format.h"
#include "support/encoding/field_reader.h"
#include "tools/formats/field_writer.h"
#include "tools/formats/marker_search.h"
#include "tools/formats/strict_fields.h"
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
  StrictFields fields(bytes, "the params file", "", endOfMarker(bytes));
  Properties properties;
  const long count = fields.number("the number of properties");
  for (long i = 0; i < count; ++i) {
    std::string name = fields.text("a property's name", INT_MAX);
    std::string value = fields.text("a property's value", INT_MAX);
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
