#ifndef QUORVANE_TOOLS_APPLE_SEALED_FILES_H
#define QUORVANE_TOOLS_APPLE_SEALED_FILES_H

#include <map>
#include <string>

// The list of sealed files of a signed bundle, Contents/_CodeSignature/CodeResources.

namespace tools {

struct SealedFile {
  std::string digest;       // SHA-256; empty where the list has none
  std::string link;         // the target of a symbolic link; empty for a file
  bool isCode = false;      // a signed file or bundle, whose own signature covers it
  bool isOptional = false;  // may be missing
};

// By path in Contents.
using SealedFiles = std::map<std::string, SealedFile>;

// Returns the files that the text of the list names. Throws InputError if the text is not a
// property list in XML or has no such list.
SealedFiles readSealedFiles(const std::string& text);

}  // namespace tools

#endif
