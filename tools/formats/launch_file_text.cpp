#include "tools/formats/launch_file_text.h"

#include <toml++/toml.h>

#include <algorithm>
#include <sstream>

#include "tools/system/input_error.h"
#include "tools/system/texts.h"

namespace tools {

namespace {

// One key of the text and its field; exactly one of the four is set.
struct Key {
  const char* name;
  long since;  // the version that added the field
  std::string LaunchFile::*text = nullptr;
  long LaunchFile::*number = nullptr;
  bool LaunchFile::*flag = nullptr;
  std::vector<std::string> LaunchFile::*texts = nullptr;
};

Key textKey(const char* name, long since, std::string LaunchFile::*field) {
  return {name, since, field, nullptr, nullptr, nullptr};
}
Key numberKey(const char* name, long since, long LaunchFile::*field) {
  return {name, since, nullptr, field, nullptr, nullptr};
}
Key flagKey(const char* name, long since, bool LaunchFile::*field) {
  return {name, since, nullptr, nullptr, field, nullptr};
}
Key textsKey(const char* name, long since, std::vector<std::string> LaunchFile::*field) {
  return {name, since, nullptr, nullptr, nullptr, field};
}

}  // namespace

// In the order of the fields in the launch file.
static const std::vector<Key>& keys() {
  static const std::vector<Key> all = {
      numberKey("version", 1, &LaunchFile::version),
      textKey("class", 1, &LaunchFile::mainClass),
      textKey("update_class", 1, &LaunchFile::updateClass),
      textKey("app_name", 1, &LaunchFile::appName),
      textKey("icon", 1, &LaunchFile::icon),
      flagKey("url_required", 1, &LaunchFile::urlRequired),
      numberKey("maximum_heap_mb", 1, &LaunchFile::maximumHeapMegabytes),
      numberKey("initial_heap_mb", 1, &LaunchFile::initialHeapMegabytes),
      textsKey("class_path", 1, &LaunchFile::classPath),
      textsKey("arguments", 1, &LaunchFile::arguments),
      textKey("compatibility_class", 3, &LaunchFile::compatibilityClass),
      textKey("post_install_class", 4, &LaunchFile::postInstallClass),
      textKey("pre_uninstall_class", 4, &LaunchFile::preUninstallClass),
      textsKey("jvm_options", 5, &LaunchFile::jvmOptions),
      flagKey("must_fork", 6, &LaunchFile::mustFork),
  };
  return all;
}

template <typename Value>
static Value valueIn(const toml::node& node, const Key& key, const char* wanted) {
  const auto value = node.value_exact<Value>();
  if (!value) {
    throw InputError(std::string("\"") + key.name + "\" must be " + wanted);
  }
  return *value;
}

static std::vector<std::string> textsIn(const toml::node& node, const Key& key) {
  const char* const wanted = "a list of strings";
  if (!node.is_array()) {
    throw InputError(std::string("\"") + key.name + "\" must be " + wanted);
  }
  std::vector<std::string> texts;
  for (const toml::node& element : *node.as_array()) {
    texts.push_back(valueIn<std::string>(element, key, wanted));
  }
  return texts;
}

static void setField(const Key& key, const toml::node& node, LaunchFile* file) {
  if (key.texts != nullptr) {
    file->*key.texts = textsIn(node, key);
  } else if (key.text != nullptr) {
    file->*key.text = valueIn<std::string>(node, key, "a string");
  } else if (key.number != nullptr) {
    file->*key.number = valueIn<int64_t>(node, key, "a whole number");
  } else {
    file->*key.flag = valueIn<bool>(node, key, "true or false");
  }
}

static const Key& keyNamed(const std::string& name) {
  for (const Key& key : keys()) {
    if (name == key.name) {
      return key;
    }
  }
  std::vector<std::string> known;
  for (const Key& key : keys()) {
    known.emplace_back(key.name);
  }
  throw InputError("unknown key \"" + name + "\"; known are " + joined(known, ", "));
}

static toml::table parsed(const std::string& text) {
  try {
    return toml::parse(text);
  } catch (const toml::parse_error& error) {
    std::ostringstream message;
    message << "line " << error.source().begin.line << ": " << error.description();
    throw InputError(message.str());
  }
}

LaunchFile launchFileFromText(const std::string& text) {
  LaunchFile file;
  for (const auto& [name, node] : parsed(text)) {
    setField(keyNamed(std::string(name.str())), node, &file);
  }
  return file;
}

static std::string quoted(const std::string& text) {
  std::ostringstream out;
  out << toml::value<std::string>(text);
  return out.str();
}

static std::string valueOf(const Key& key, const LaunchFile& file) {
  if (key.text != nullptr) {
    return quoted(file.*key.text);
  }
  if (key.number != nullptr) {
    return std::to_string(file.*key.number);
  }
  if (key.flag != nullptr) {
    return file.*key.flag ? "true" : "false";
  }
  std::vector<std::string> list;
  for (const std::string& text : file.*key.texts) {
    list.push_back(quoted(text));
  }
  return "[" + joined(list, ", ") + "]";
}

static bool isSameField(const Key& key, const LaunchFile& a, const LaunchFile& b) {
  return key.text != nullptr     ? a.*key.text == b.*key.text
         : key.number != nullptr ? a.*key.number == b.*key.number
         : key.flag != nullptr   ? a.*key.flag == b.*key.flag
                                 : a.*key.texts == b.*key.texts;
}

static bool holdsSameFields(const std::string& text, const LaunchFile& file) {
  try {
    const LaunchFile read = launchFileFromText(text);
    return std::all_of(keys().begin(), keys().end(),
                       [&](const Key& key) { return isSameField(key, read, file); });
  } catch (const InputError&) {
    return false;
  }
}

std::string textOfLaunchFile(const LaunchFile& file) {
  std::string text;
  for (const Key& key : keys()) {
    if (file.version >= key.since) {
      text += std::string(key.name) + " = " + valueOf(key, file) + "\n";
    }
  }
  if (!holdsSameFields(text, file)) {
    throw InputError("the launch file contains text that is not UTF-8, which cannot be shown");
  }
  return text;
}

}  // namespace tools
