#ifndef QUORVANE_TOOLS_APPLE_SEAL_H
#define QUORVANE_TOOLS_APPLE_SEAL_H

#include <string>
#include <vector>

#include "tools/apple/code_signature.h"

// A signed bundle's seal: its executable's signature covers Info.plist and the list of sealed
// files, and the list covers the files.

namespace tools {

struct Seal {
  // The executable's; none if it is no Mach-O file.
  std::vector<CodeSignature> signatures;
  bool isSealed = false;  // the bundle has a list of sealed files
  // What is not as it was signed, a sentence each.
  std::vector<std::string> faults;
};

// Reads the signature of the bundle folder `bundle`, whose executable is `executable`, and compares
// everything it covers. The rules by which a list may leave files out are not those of the list but
// Apple's usual ones. Throws InputError if something cannot be read.
[[nodiscard]] Seal readSeal(const std::string& bundle, const std::string& executable);

// Returns whether something of the bundle folder `bundle` is sealed, looking at no content.
[[nodiscard]] bool hasSeal(const std::string& bundle);

}  // namespace tools

#endif
