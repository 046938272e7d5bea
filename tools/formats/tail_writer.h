#ifndef QUORVANE_TOOLS_FORMATS_TAIL_WRITER_H
#define QUORVANE_TOOLS_FORMATS_TAIL_WRITER_H

#include <string>

#include "launcher/installation/tail_fields.h"

// The Tail record, which tells the Launcher and the Extractor what they start. A bundle that is
// signed carries it as the file Contents/Resources/Tail; it may also stand behind the executable,
// with the marker in front of it. launcher/installation/tail_fields.h has the order of the fields.

namespace tools {

// The install types that the packager knows. Only the first two have a meaning of their own.
constexpr char INSTALL_FOR_ALL[] = "perm_all";
constexpr char INSTALL_FOR_USER[] = "perm_user";
constexpr char INSTALL_TEMPORARY[] = "temporary";

struct Tail {
  std::string appName;
  std::string appVersion;    // empty when no application is carried
  std::string jreVersion;    // empty when no runtime is carried
  std::string guVersion;     // empty when no GenericUpdater is carried
  long minSplashMs = 0;      // milliseconds
  std::string publicKeyHex;  // empty when archives are not signed
  bool canOverrideSplash = false;
  std::string installType = INSTALL_FOR_USER;
  std::string silentParameter;
  std::string requiredJavaVersion;
  std::string updateUrl;  // "D" for one that is given from outside
};

// Returns the record's bytes, without the marker. Throws InputError when the application's name
// cannot name its folders, a version is no decimal number, the key is no hexadecimal text, the
// install type is unknown, the required Java version is no whole number, a number is negative, or a
// text does not fit its field.
std::string encodeTail(const Tail& tail);

// Returns the place of the Tail in the bundle folder `bundle`, making the Resources folder when it
// is missing. Throws InputError when the folder is no bundle.
std::string tailPathInBundle(const std::string& bundle);

// Writes the record to the file `path`, replacing it as a whole. Throws InputError.
void writeTailFile(const std::string& path, const Tail& tail);

// Puts the marker and the record behind the executable `path`, replacing it as a whole and keeping
// its mode. Throws InputError when it carries a record already, since that one would be found.
void appendTail(const std::string& path, const Tail& tail);

// The number of values in a record.
constexpr int TAIL_VALUE_COUNT = TAIL_FIELD_COUNT;

// A record as it stands in a file.
struct FoundTail {
  // The values in the order of the record, as they are; the eleventh is empty in a record that ends
  // behind the tenth.
  std::string values[TAIL_VALUE_COUNT];
  bool isAppended = false;    // behind an executable, not a file of its own
  long long offset = 0;       // of the first field, in bytes
  long long bytesBehind = 0;  // archives that follow the fields, in bytes
};

// The names of the values, as the command line and the output spell them.
extern const char* const TAIL_VALUE_NAMES[TAIL_VALUE_COUNT];

// Reads the record behind the marker in the file `path`, or the one that the file is. Throws
// InputError, naming the value, when the record is cut short or a value is longer than the product
// reads whole.
FoundTail findTail(const std::string& path);

}  // namespace tools

#endif
