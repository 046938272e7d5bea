#ifndef QUORVANE_TOOLS_FORMATS_TAIL_WRITER_H
#define QUORVANE_TOOLS_FORMATS_TAIL_WRITER_H

#include <string>

#include "formats/tail_fields.h"

// The Tail record, which tells the Launcher and the Extractor what they start. A bundle that is
// signed carries it as the file Contents/Resources/Tail; it may also stand behind the executable,
// with the marker in front of it. formats/tail_fields.h has the order of the fields.

namespace tools {

// The install types that the packager knows. Only the first two have a special meaning.
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
  std::string updateUrl;  // "D" if a property gives it
};

// Returns the record's bytes, without the marker. Throws InputError if the application's name
// cannot be used in folder names, a version is not a decimal number, the key is not hexadecimal
// text, the install type is unknown, the required Java version is not a whole number, a number is
// negative, or a text does not fit its field.
std::string encodeTail(const Tail& tail);

// Returns the path of the Tail in the bundle folder `bundle`, creating the Resources folder if it
// is missing. Throws InputError if the folder is not a bundle.
std::string tailPathInBundle(const std::string& bundle);

// Writes the record to the file `path`, replacing it atomically. Throws InputError.
void writeTailFile(const std::string& path, const Tail& tail);

// Appends the marker and the record to the executable `path`, replacing it atomically and keeping
// its mode. Throws InputError if it already has a record, because that one would be found.
void appendTail(const std::string& path, const Tail& tail);

// The number of values in a record.
constexpr int TAIL_VALUE_COUNT = TAIL_FIELD_COUNT;

// A record as found in a file.
struct FoundTail {
  // The values in record order, unchanged; the eleventh is empty in a record that ends after the
  // tenth.
  std::string values[TAIL_VALUE_COUNT];
  bool isAppended = false;    // to an executable; else a separate file
  long long offset = 0;       // of the first field, in bytes
  long long bytesBehind = 0;  // archives that follow the fields, in bytes
};

// The names of the values on the command line and in the output.
extern const char* const TAIL_VALUE_NAMES[TAIL_VALUE_COUNT];

// Reads the record after the marker in the file `path`, or the record that the file itself is.
// Throws InputError, naming the value, if the record is truncated or a value is longer than the
// product reads completely.
FoundTail findTail(const std::string& path);

}  // namespace tools

#endif
