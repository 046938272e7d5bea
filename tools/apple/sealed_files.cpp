#include "tools/apple/sealed_files.h"

#include <algorithm>
#include <cctype>

#include "support/encoding/base64.h"
#include "support/owned.h"
#include "tools/bundle/plist_reader.h"
#include "tools/system/input_error.h"

namespace tools {

namespace {

std::string decoded(std::string base64) {
  base64.erase(
      std::remove_if(base64.begin(), base64.end(), [](unsigned char c) { return isspace(c) != 0; }),
      base64.end());
  size_t size = 0;
  const Block<unsigned char> bytes(base64_decode(base64.data(), base64.size(), &size));
  return bytes == nullptr ? "" : std::string(reinterpret_cast<const char*>(bytes.get()), size);
}

// A file's entry is a dictionary, or in older lists its digest alone.
SealedFile readFile(PlistReader* reader, const PlistTag& start) {
  SealedFile file;
  if (start.name != "dict") {
    reader->skip(start);
    return file;
  }
  reader->table(start, [&](const std::string& key, const PlistTag& tag) {
    if (key == "hash2") {
      file.digest = decoded(reader->text(tag));
    } else if (key == "symlink") {
      file.link = reader->text(tag);
    } else if (key == "optional") {
      file.isOptional = tag.name == "true";
      reader->skip(tag);
    } else {
      file.isCode = file.isCode || key == "cdhash";
      reader->skip(tag);
    }
  });
  return file;
}

SealedFiles readList(const std::string& text) {
  PlistReader reader(text);
  SealedFiles files;
  bool isFound = false;
  reader.table(reader.start(), [&](const std::string& key, const PlistTag& tag) {
    if (key != "files2") {
      reader.skip(tag);
      return;
    }
    isFound = true;
    reader.table(tag, [&](const std::string& name, const PlistTag& entry) {
      files[name] = readFile(&reader, entry);
    });
  });
  if (!isFound) {
    throw InputError("has no entry files2");
  }
  return files;
}

}  // namespace

SealedFiles readSealedFiles(const std::string& text) {
  try {
    return readList(text);
  } catch (const InputError& error) {
    throw InputError(std::string("the list of sealed files ") + error.what() +
                     "; sign the bundle again");
  }
}

}  // namespace tools
