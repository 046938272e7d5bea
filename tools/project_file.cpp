#include "tools/project_file.h"

#include <toml++/toml.h>

#include <filesystem>
#include <functional>
#include <map>
#include <sstream>

#include "tools/input_error.h"

namespace fs = std::filesystem;

namespace tools {

namespace {

// How the value of one key gets into the project. Returns false when it has another type.
using Setter = std::function<bool(const toml::node&)>;
using Setters = std::map<std::string, Setter>;

Setter text(std::string* field) {
  return [field](const toml::node& value) {
    const auto* string = value.as_string();
    *field = string == nullptr ? *field : string->get();
    return string != nullptr;
  };
}

// A path in the file, relative to the folder `base`.
Setter path(std::string* field, const fs::path& base) {
  return [field, base](const toml::node& value) {
    const auto* string = value.as_string();
    if (string != nullptr && !string->get().empty()) {
      *field = (base / string->get()).lexically_normal();
    }
    return string != nullptr;
  };
}

Setter flag(bool* field) {
  return [field](const toml::node& value) {
    const auto* boolean = value.as_boolean();
    *field = boolean == nullptr ? *field : boolean->get();
    return boolean != nullptr;
  };
}

Setter number(long* field) {
  return [field](const toml::node& value) {
    const auto* integer = value.as_integer();
    *field = integer == nullptr ? *field : static_cast<long>(integer->get());
    return integer != nullptr;
  };
}

Setter pairs(Properties* field) {
  return [field](const toml::node& value) {
    const toml::table* table = value.as_table();
    bool areTexts = table != nullptr;
    for (auto it = areTexts ? table->begin() : toml::table::const_iterator{};
         areTexts && it != table->end(); ++it) {
      const auto* string = it->second.as_string();
      areTexts = string != nullptr;
      if (areTexts) {
        field->emplace_back(std::string(it->first.str()), string->get());
      }
    }
    return areTexts;
  };
}

std::map<std::string, Setters> settersFor(Project* project, const fs::path& base) {
  return {
      {"application",
       {{"name", text(&project->name)},
        {"version", text(&project->version)},
        {"identifier", text(&project->identifier)},
        {"folder", path(&project->appFolder, base)},
        {"icon", path(&project->icon, base)}}},
      {"updater",
       {{"folder", path(&project->updaterFolder, base)},
        {"version", text(&project->updaterVersion)}}},
      {"runtime",
       {{"folder", path(&project->runtimeHome, base)},
        {"version", text(&project->runtimeVersion)},
        {"name", text(&project->runtimeName)}}},
      {"installer",
       {{"install_type", text(&project->installType)},
        {"update_url", text(&project->updateUrl)},
        {"silent_parameter", text(&project->silentParameter)},
        {"minimum_splash_ms", number(&project->minimumSplashMs)},
        {"splash", path(&project->splash, base)},
        {"can_override_splash", flag(&project->canOverrideSplash)},
        {"required_java", text(&project->requiredJava)},
        {"require_signature", flag(&project->requireSignature)},
        {"properties", pairs(&project->properties)}}},
      {"signing", {{"key", path(&project->key, base)}}},
  };
}

toml::table parse(const std::string& path) {
  try {
    return toml::parse_file(path);
  } catch (const toml::parse_error& error) {
    std::ostringstream where;
    where << path << ":" << error.source().begin.line << ": " << error.description();
    throw InputError(where.str());
  }
}

void applySection(const std::string& file, const std::string& section, const toml::node& node,
                  const Setters& setters) {
  const toml::table* table = node.as_table();
  if (table == nullptr) {
    throw InputError(file + ": " + section + " is no table; write it as [" + section + "]");
  }
  for (const auto& [key, value] : *table) {
    const std::string name(key.str());
    const auto setter = setters.find(name);
    if (setter == setters.end()) {
      throw InputError(file + ": [" + section + "] knows no key '" + name + "'");
    }
    if (!setter->second(value)) {
      throw InputError(file + ": '" + name + "' in [" + section + "] has a value of another type");
    }
  }
}

void require(const std::string& file, const char* section, const char* key,
             const std::string& value) {
  if (value.empty()) {
    throw InputError(file + ": [" + section + "] needs the key '" + key + "'");
  }
}

}  // namespace

Project readProject(const std::string& file) {
  const toml::table table = parse(file);
  Project project;
  const auto sections = settersFor(&project, fs::path(file).parent_path());
  for (const auto& [key, node] : table) {
    const std::string name(key.str());
    const auto section = sections.find(name);
    if (section == sections.end()) {
      throw InputError(file + ": there is no section [" + name + "]");
    }
    applySection(file, name, node, section->second);
  }
  require(file, "application", "name", project.name);
  require(file, "application", "version", project.version);
  require(file, "application", "identifier", project.identifier);
  require(file, "application", "folder", project.appFolder);
  require(file, "updater", "folder", project.updaterFolder);
  require(file, "updater", "version", project.updaterVersion);
  require(file, "runtime", "folder", project.runtimeHome);
  require(file, "runtime", "version", project.runtimeVersion);
  if (project.requireSignature) {
    require(file, "signing", "key", project.key);
  }
  return project;
}

}  // namespace tools
