#ifndef QUORVANE_TOOLS_FORMATS_LAUNCH_FILE_TEXT_H
#define QUORVANE_TOOLS_FORMATS_LAUNCH_FILE_TEXT_H

#include <string>

#include "tools/formats/launch_file_writer.h"

// The launch file as TOML text, with a key for each field; a key that is left out has the field's
// default, and the version's is the newest.

namespace tools {

// Returns what the text says. Throws InputError, naming the key, when the text is no TOML, a key is
// unknown or a value has the wrong type.
LaunchFile launchFileFromText(const std::string& text);

// Returns the text for a launch file, with every key of its version. Throws InputError when a field
// is no UTF-8, which TOML cannot hold.
std::string textOfLaunchFile(const LaunchFile& file);

}  // namespace tools

#endif
