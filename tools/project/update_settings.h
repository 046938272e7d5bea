#ifndef QUORVANE_TOOLS_PROJECT_UPDATE_SETTINGS_H
#define QUORVANE_TOOLS_PROJECT_UPDATE_SETTINGS_H

#include <optional>
#include <string>

// How the packager's own updater looks for new versions: the section [updates] of a project, and
// the file that carries it.

namespace tools {

// The file's name, beside the updater's jar.
constexpr char UPDATE_SETTINGS_NAME[] = "updates.properties";

struct UpdateSettings {
  std::string check;             // "background", "before_start" or "never"; empty for the first
  std::optional<long> interval;  // seconds between two checks; a day by default
  std::optional<long> keep;      // how many versions of a component to keep; two by default
  std::string url;               // the channel; empty for the update URL of the installer
};

// Returns whether anything is set.
[[nodiscard]] bool isSet(const UpdateSettings& settings);

// Returns what is wrong with the settings and what would be right, beginning with the key, or an
// empty text.
[[nodiscard]] std::string faultOf(const UpdateSettings& settings);

// Returns the file's bytes, for settings without a fault: Java properties.
[[nodiscard]] std::string encodeUpdateSettings(const UpdateSettings& settings);

}  // namespace tools

#endif
