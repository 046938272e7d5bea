#ifndef QUORVANE_TOOLS_VERIFY_BUNDLE_READER_H
#define QUORVANE_TOOLS_VERIFY_BUNDLE_READER_H

#include <string>

namespace tools {

// Returns the path of the executable of the bundle folder `bundle`, the one that its Info.plist
// names. Throws InputError when the folder is no bundle, or the executable is missing or may not be
// executed.
std::string executableOfBundle(const std::string& bundle);

// Returns the text behind `key` in the text of an Info.plist, or an empty text.
std::string plistText(const std::string& plist, const std::string& key);

}  // namespace tools

#endif
