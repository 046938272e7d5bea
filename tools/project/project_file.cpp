#include "tools/project/project_file.h"

#include <toml++/toml.h>

#include <filesystem>
#include <functional>
#include <map>
#include <optional>
#include <sstream>

#include "tools/objects/target.h"
#include "tools/project/plist_keys.h"
#include "tools/system/input_error.h"
#include "tools/system/texts.h"
#include "tools/system/whole_file.h"

namespace fs = std::filesystem;

namespace tools {

namespace {

// The type a key expects, and how to store its value in the project: false if it has another type.
struct Key {
  const char* expected;
  std::function<bool(const toml::node&)> set;
};
using Keys = std::map<std::string, Key>;

Key text(std::string* field) {
  return {"a string", [field](const toml::node& value) {
            const auto found = value.value_exact<std::string>();
            *field = found.value_or(*field);
            return found.has_value();
          }};
}

// A version, which may be written without quotes.
Key version(std::string* field) {
  return {"a whole number", [field](const toml::node& value) {
            const auto digits = value.value_exact<int64_t>();
            const auto found = value.value_exact<std::string>();
            *field = digits ? std::to_string(*digits) : found.value_or(*field);
            return digits || found;
          }};
}

// A path in the file, relative to the folder `base`.
Key path(std::string* field, const fs::path& base) {
  return {"a path as a string", [field, base](const toml::node& value) {
            const auto found = value.value_exact<std::string>();
            if (found && !found->empty()) {
              *field = (base / *found).lexically_normal();
            }
            return found.has_value();
          }};
}

Key flag(bool* field) {
  return {"true or false", [field](const toml::node& value) {
            const auto found = value.value_exact<bool>();
            *field = found.value_or(*field);
            return found.has_value();
          }};
}

Key number(long* field) {
  return {"a whole number", [field](const toml::node& value) {
            const auto found = value.value_exact<int64_t>();
            *field = found ? static_cast<long>(*found) : *field;
            return found.has_value();
          }};
}

Key number(std::optional<long>* field) {
  return {"a whole number", [field](const toml::node& value) {
            const auto found = value.value_exact<int64_t>();
            if (found) {
              *field = static_cast<long>(*found);
            }
            return found.has_value();
          }};
}

Key texts(std::vector<std::string>* field) {
  return {"a list of strings", [field](const toml::node& value) {
            if (!value.is_array()) {
              return false;
            }
            for (const toml::node& element : *value.as_array()) {
              const auto found = element.value_exact<std::string>();
              if (!found) {
                return false;
              }
              field->push_back(*found);
            }
            return true;
          }};
}

Key documentTypes(std::vector<DocumentType>* field, const fs::path& base) {
  return {"a list of tables with name, role, extensions, content_types and icon",
          [field, base](const toml::node& value) {
            const auto found = documentTypesOf(value, base);
            *field = found.value_or(*field);
            return found.has_value();
          }};
}

Key pairs(Properties* field) {
  return {"a table of strings", [field](const toml::node& value) {
            if (!value.is_table()) {
              return false;
            }
            for (const auto& [name, element] : *value.as_table()) {
              const auto found = element.value_exact<std::string>();
              if (!found) {
                return false;
              }
              field->emplace_back(std::string(name.str()), *found);
            }
            return true;
          }};
}

// Values that are switches, texts or lists of texts.
Key entitlements(Entitlements* field) {
  return {"a table of true, false, strings and lists of strings", [field](const toml::node& value) {
            if (!value.is_table()) {
              return false;
            }
            for (const auto& [name, element] : *value.as_table()) {
              EntitlementValue& found = (*field)[std::string(name.str())];
              std::string word;
              std::vector<std::string> list;
              bool isOn = false;
              if (flag(&isOn).set(element)) {
                found = isOn;
              } else if (text(&word).set(element)) {
                found = word;
              } else if (texts(&list).set(element)) {
                found = list;
              } else {
                return false;
              }
            }
            return true;
          }};
}

Keys applicationKeys(Project* project, const fs::path& base) {
  return {{"name", text(&project->name)},
          {"version", version(&project->version)},
          {"identifier", text(&project->identifier)},
          {"jar", path(&project->jar, base)},
          {"folder", path(&project->appFolder, base)},
          {"main_class", text(&project->mainClass)},
          {"class_path", texts(&project->classPath)},
          {"console", flag(&project->isForConsole)},
          {"arguments", texts(&project->arguments)},
          {"jvm_options", texts(&project->jvmOptions)},
          {"maximum_heap_mb", number(&project->maximumHeapMegabytes)},
          {"icon", path(&project->icon, base)},
          {"display_name", text(&project->displayName)},
          {"display_version", text(&project->displayVersion)},
          {"category", text(&project->category)},
          {"copyright", text(&project->copyright)},
          {"url_schemes", texts(&project->urlSchemes)},
          {"document_types", documentTypes(&project->documentTypes, base)},
          {"targets", texts(&project->targets)}};
}

Keys runtimeKeys(Project* project, const fs::path& base) {
  return {{"folder", path(&project->runtimeHome, base)},
          {"modules", texts(&project->runtimeModules)},
          {"jdk", path(&project->jdk, base)},
          {"jdk_archive", path(&project->jdkArchive, base)},
          {"jdk_sha256", text(&project->jdkSha256)},
          {"jmods", path(&project->jmods, base)},
          {"version", version(&project->runtimeVersion)},
          {"name", text(&project->runtimeName)}};
}

Keys targetRuntimeKeys(RuntimeSource* source, const fs::path& base) {
  return {{"folder", path(&source->folder, base)},
          {"jdk_archive", path(&source->jdkArchive, base)},
          {"jdk_sha256", text(&source->jdkSha256)},
          {"jmods", path(&source->jmods, base)},
          {"version", version(&source->version)}};
}

Keys updatesKeys(Project* project) {
  return {{"check", text(&project->updates.check)},
          {"interval", number(&project->updates.interval)},
          {"keep", number(&project->updates.keep)},
          {"url", text(&project->updates.url)}};
}

Keys installerKeys(Project* project, const fs::path& base) {
  return {{"install_type", text(&project->installType)},
          {"update_url", text(&project->updateUrl)},
          {"silent_parameter", text(&project->silentParameter)},
          {"minimum_splash_ms", number(&project->minimumSplashMs)},
          {"splash", path(&project->splash, base)},
          {"can_override_splash", flag(&project->canOverrideSplash)},
          {"required_java", text(&project->requiredJava)},
          {"require_signature", flag(&project->requireSignature)},
          {"properties", pairs(&project->properties)}};
}

Keys appleKeys(AppleSigning* apple, const fs::path& base) {
  return {{"certificate", path(&apple->certificate, base)},
          {"key", path(&apple->key, base)},
          {"password_file", path(&apple->passwordFile, base)},
          {"identity", text(&apple->identity)},
          {"team", text(&apple->team)},
          {"notary_key", path(&apple->notaryKey, base)},
          {"notary_profile", text(&apple->notaryProfile)},
          {"entitlements", entitlements(&apple->entitlements)},
          {"timestamp", flag(&apple->hasTimestamp)}};
}

std::map<std::string, Keys> sectionsOf(Project* project, const fs::path& base) {
  return {
      {"application", applicationKeys(project, base)},
      {"updater",
       {{"folder", path(&project->updaterFolder, base)},
        {"version", version(&project->updaterVersion)}}},
      {"updates", updatesKeys(project)},
      {"runtime", runtimeKeys(project, base)},
      {"installer", installerKeys(project, base)},
      {"signing", {{"key", path(&project->key, base)}}},
      {"info_plist", {}},  // has keys of its own
  };
}

template <typename Map>
std::string namesOf(const Map& map) {
  std::vector<std::string> names;
  for (const auto& entry : map) {
    names.push_back(entry.first);
  }
  return joined(names, ", ");
}

std::string placeOf(const std::string& file, const toml::node& node) {
  return file + ":" + std::to_string(node.source().begin.line) + ": ";
}

std::string typeOf(const toml::node& node) {
  std::ostringstream name;
  name << node.type();
  return name.str();
}

toml::table parse(const std::string& file) {
  try {
    return toml::parse(readWhole(file), file);
  } catch (const toml::parse_error& error) {
    std::ostringstream where;
    where << file << ":" << error.source().begin.line << ": " << error.description();
    throw InputError(where.str());
  }
}

const toml::table& tableOf(const std::string& file, const std::string& section,
                           const toml::node& node) {
  const toml::table* table = node.as_table();
  if (table == nullptr) {
    throw InputError(placeOf(file, node) + section + " is not a section; write it as [" + section +
                     "] with its keys below");
  }
  return *table;
}

void readInfoPlist(const std::string& file, const toml::table& table, PlistTable* entries) {
  for (const auto& [name, node] : table) {
    std::optional<PlistValue> value = plistValueOf(node);
    if (!value) {
      throw InputError(placeOf(file, node) + "'" + std::string(name.str()) +
                       "' in [info_plist] must be a string, true or false, a whole number, or a "
                       "list or a table of such");
    }
    setEntry(entries, std::string(name.str()), std::move(*value));
  }
}

// Reads the keys of a section, except for those that `isTaken` names.
void applySection(const std::string& file, const std::string& section, const toml::node& node,
                  const Keys& keys, const std::function<bool(const std::string&)>& isTaken = {}) {
  for (const auto& [name, value] : tableOf(file, section, node)) {
    if (isTaken && isTaken(std::string(name.str()))) {
      continue;
    }
    const auto key = keys.find(std::string(name.str()));
    if (key == keys.end()) {
      throw InputError(placeOf(file, value) + "[" + section + "] has no key '" +
                       std::string(name.str()) + "'; known are " + namesOf(keys));
    }
    if (!key->second.set(value)) {
      throw InputError(placeOf(file, value) + "'" + key->first + "' in [" + section + "] must be " +
                       key->second.expected + "; this is " +
                       (value.is_array() || value.is_table() ? "something else" : typeOf(value)));
    }
  }
}

bool isTarget(const std::string& name) {
  return targetOf(name).has_value();
}

// Reads the sections [runtime.TARGET] in the section [runtime].
void applyTargetRuntimes(Project* project, const toml::node& runtime, const fs::path& base) {
  if (!runtime.is_table()) {
    return;
  }
  for (const auto& [name, node] : *runtime.as_table()) {
    const std::string target(name.str());
    if (isTarget(target)) {
      const Keys keys = targetRuntimeKeys(&project->targetRuntimes[target], base);
      applySection(project->file, "runtime." + target, node, keys);
    }
  }
}

bool isApple(const std::string& name) {
  return name == "apple";
}

// Reads the section [signing.apple] in the section [signing].
void applyApple(Project* project, const toml::node& signing, const fs::path& base) {
  const toml::node* apple = signing.is_table() ? signing.as_table()->get("apple") : nullptr;
  if (apple != nullptr) {
    applySection(project->file, "signing.apple", *apple, appleKeys(&project->apple, base));
  }
}

}  // namespace

Project readProject(const std::string& file) {
  if (!fs::exists(file)) {
    throw InputError(file +
                     " does not exist; name a project file, or make one with 'quorvane-pack init'");
  }
  const toml::table table = parse(file);
  Project project;
  project.file = file;
  const fs::path base = fs::path(file).parent_path();
  const auto sections = sectionsOf(&project, base);
  for (const auto& [name, node] : table) {
    const auto section = sections.find(std::string(name.str()));
    if (section == sections.end()) {
      throw InputError(placeOf(file, node) + "there is no section [" + std::string(name.str()) +
                       "]; known are " + namesOf(sections));
    }
    if (section->first == "info_plist") {
      readInfoPlist(file, tableOf(file, section->first, node), &project.infoPlist);
    } else if (section->first == "runtime") {
      applySection(file, section->first, node, section->second, isTarget);
      applyTargetRuntimes(&project, node, base);
    } else if (section->first == "signing") {
      applySection(file, section->first, node, section->second, isApple);
      applyApple(&project, node, base);
    } else {
      applySection(file, section->first, node, section->second);
    }
  }
  return project;
}

}  // namespace tools
