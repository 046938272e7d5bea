#ifndef QUORVANE_TOOLS_BUNDLE_BUNDLE_READER_H
#define QUORVANE_TOOLS_BUNDLE_BUNDLE_READER_H

#include <string>

namespace tools {

// Returns the path of the executable that the Info.plist of the bundle folder `bundle` names.
// Throws InputError if the folder is not a bundle, or if the executable is missing or not
// executable, or if Info.plist is not XML.
std::string executableOfBundle(const std::string& bundle);

// Returns the text for `key` in the outermost table of the text of an Info.plist, or an empty text.
// Throws InputError, with a text for appending to the file's name, if it is no property list in
// XML.
std::string plistText(const std::string& plist, const std::string& key);

}  // namespace tools

#endif
