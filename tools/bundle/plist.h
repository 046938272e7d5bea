#ifndef QUORVANE_TOOLS_BUNDLE_PLIST_H
#define QUORVANE_TOOLS_BUNDLE_PLIST_H

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

// Property lists: values, and their XML form.

namespace tools {

struct PlistEntry;
struct PlistValue;

using PlistList = std::vector<PlistValue>;
// Sorted by key, without duplicates, if it is filled with setEntry().
using PlistTable = std::vector<PlistEntry>;

struct PlistValue {
  std::variant<std::string, bool, int64_t, PlistList, PlistTable> content;
};

struct PlistEntry {
  std::string key;
  PlistValue value;
};

// Values of each kind. A C string would otherwise become a bool.
PlistValue plistString(std::string text);
PlistValue plistBoolean(bool flag);
PlistValue plistStrings(const std::vector<std::string>& texts);

// Sets the entry `key`, replacing an existing one.
void setEntry(PlistTable* table, const std::string& key, PlistValue value);

// Returns the entry's value, or null if there is none. The table owns it.
const PlistValue* findEntry(const PlistTable& table, const std::string& key);

// Returns what makes a text or a key of the value unusable, or nothing: XML 1.0 cannot hold control
// characters other than tab and line ends, nor U+FFFE and U+FFFF, not even escaped; and what is not
// UTF-8 is no text.
std::string faultOfPlistText(const std::string& text);
std::string faultOfPlist(const PlistValue& value);

// Returns the XML property list of the table. Throws InputError if faultOfPlist() finds a fault.
std::string encodePlist(const PlistTable& table);

}  // namespace tools

#endif
