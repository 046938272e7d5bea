#ifndef QUORVANE_TOOLS_PROJECT_PLIST_KEYS_H
#define QUORVANE_TOOLS_PROJECT_PLIST_KEYS_H

#include <toml++/toml.h>

#include <optional>
#include <string>
#include <vector>

#include "tools/bundle/info_plist.h"

// The parts of a project file that describe Info.plist.

namespace tools {

// Returns the value for a property list: a string, boolean, whole number, or a list or table of
// such. Nothing if it is, or holds, anything else.
std::optional<PlistValue> plistValueOf(const toml::node& node);

// Returns the document types in the list `node`, with icons as paths relative to `base`, and with
// the role "Viewer" where none is given. Nothing if it is not a list of tables with only the known
// keys, of the right types.
std::optional<std::vector<DocumentType>> documentTypesOf(const toml::node& node,
                                                         const std::string& base);

}  // namespace tools

#endif
