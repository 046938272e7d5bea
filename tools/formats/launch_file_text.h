#ifndef QUORVANE_TOOLS_FORMATS_LAUNCH_FILE_TEXT_H
#define QUORVANE_TOOLS_FORMATS_LAUNCH_FILE_TEXT_H

#include <string>

#include "tools/formats/launch_file_writer.h"

// The launch file as TOML text, with a key for each field. An omitted key has the field's default;
// the default version is the newest.

namespace tools {

// Parses the text. Throws InputError, naming the key, if the text is not TOML, a key is unknown or
// a value has the wrong type.
LaunchFile launchFileFromText(const std::string& text);

// Returns the text for a launch file, with every key of its version. Throws InputError if a field
// is not UTF-8, which TOML cannot represent.
std::string textOfLaunchFile(const LaunchFile& file);

}  // namespace tools

#endif
