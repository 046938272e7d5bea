#include "tools/project/plist_keys.h"

#include <filesystem>

namespace fs = std::filesystem;

namespace tools {

static std::optional<PlistValue> listOf(const toml::array& array) {
  PlistList list;
  for (const toml::node& node : array) {
    std::optional<PlistValue> value = plistValueOf(node);
    if (!value) {
      return std::nullopt;
    }
    list.push_back(std::move(*value));
  }
  return PlistValue{std::move(list)};
}

static std::optional<PlistValue> tableOf(const toml::table& from) {
  PlistTable table;
  for (const auto& [key, node] : from) {
    std::optional<PlistValue> value = plistValueOf(node);
    if (!value) {
      return std::nullopt;
    }
    setEntry(&table, std::string(key.str()), std::move(*value));
  }
  return PlistValue{std::move(table)};
}

std::optional<PlistValue> plistValueOf(const toml::node& node) {
  if (const toml::array* array = node.as_array()) {
    return listOf(*array);
  }
  if (const toml::table* table = node.as_table()) {
    return tableOf(*table);
  }
  if (const auto text = node.value_exact<std::string>()) {
    return plistString(*text);
  }
  if (const auto flag = node.value_exact<bool>()) {
    return plistBoolean(*flag);
  }
  const auto number = node.value_exact<int64_t>();
  return number ? std::optional(PlistValue{*number}) : std::nullopt;
}

static bool readText(const toml::node& node, std::string* text) {
  const auto found = node.value_exact<std::string>();
  *text = found.value_or(*text);
  return found.has_value();
}

static bool readTexts(const toml::node& node, std::vector<std::string>* texts) {
  const toml::array* array = node.as_array();
  if (array == nullptr) {
    return false;
  }
  for (const toml::node& element : *array) {
    texts->emplace_back();
    if (!readText(element, &texts->back())) {
      return false;
    }
  }
  return true;
}

static bool readKey(const std::string& key, const toml::node& node, DocumentType* type) {
  if (key == "extensions") {
    return readTexts(node, &type->extensions);
  }
  if (key == "content_types") {
    return readTexts(node, &type->contentTypes);
  }
  std::string* text = key == "name"   ? &type->name
                      : key == "role" ? &type->role
                      : key == "icon" ? &type->icon
                                      : nullptr;
  return text != nullptr && readText(node, text);
}

static bool readDocumentType(const toml::node& node, DocumentType* type) {
  const toml::table* table = node.as_table();
  if (table == nullptr) {
    return false;
  }
  for (const auto& [key, value] : *table) {
    if (!readKey(std::string(key.str()), value, type)) {
      return false;
    }
  }
  return true;
}

std::optional<std::vector<DocumentType>> documentTypesOf(const toml::node& node,
                                                         const std::string& base) {
  const toml::array* array = node.as_array();
  if (array == nullptr) {
    return std::nullopt;
  }
  std::vector<DocumentType> types;
  for (const toml::node& element : *array) {
    DocumentType type;
    type.role = "Viewer";
    if (!readDocumentType(element, &type)) {
      return std::nullopt;
    }
    if (!type.icon.empty()) {
      type.icon = (fs::path(base) / type.icon).lexically_normal();
    }
    types.push_back(type);
  }
  return types;
}

}  // namespace tools
