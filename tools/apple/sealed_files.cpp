#include "tools/apple/sealed_files.h"

#include <algorithm>
#include <cstdlib>

#include "support/encoding/base64.h"
#include "support/owned.h"
#include "tools/system/input_error.h"
#include "tools/system/texts.h"

namespace tools {

namespace {

[[noreturn]] void fail(const std::string& what) {
  throw InputError("the list of sealed files " + what + "; sign the bundle again");
}

struct Tag {
  std::string name;
  bool isEnd = false;    // </name>
  bool isEmpty = false;  // <name/>
};

// Reads the tags and texts of the list one after the other. It knows what such lists consist of and
// no more of XML: no attributes that matter, no declared entities.
class Reader {
 public:
  explicit Reader(const std::string& text) : text_(text) {}

  Tag tag() {
    size_t open = 0;
    do {
      open = text_.find('<', at_);
      at_ = open == std::string::npos ? open : text_.find('>', open);
      if (at_ == std::string::npos) {
        fail("breaks off");
      }
      ++at_;
    } while (text_[open + 1] == '?' || text_[open + 1] == '!');
    Tag tag;
    tag.name = text_.substr(open + 1, at_ - open - 2);
    tag.isEnd = startsWith(tag.name, "/");
    tag.isEmpty = endsWith(tag.name, "/");
    tag.name.erase(0, tag.isEnd ? 1 : 0);
    tag.name = tag.name.substr(0, tag.name.find_first_of(" \t\r\n/"));
    return tag;
  }

  // The text up to the end of the element that has begun.
  std::string text(const Tag& tag) {
    if (tag.isEmpty) {
      return "";
    }
    const size_t end = text_.find('<', at_);
    const std::string found = text_.substr(at_, end == std::string::npos ? end : end - at_);
    const Tag close = this->tag();
    if (!close.isEnd || close.name != tag.name) {
      fail("has a " + tag.name + " that does not end");
    }
    return plain(found);
  }

  // Passes over the element that has begun.
  void skip(const Tag& tag) {
    for (int depth = tag.isEmpty ? 0 : 1; depth > 0;) {
      const Tag next = this->tag();
      depth += next.isEmpty ? 0 : next.isEnd ? -1 : 1;
    }
  }

 private:
  static std::string plain(const std::string& xml) {
    static const std::pair<const char*, char> kEntities[] = {
        {"&amp;", '&'}, {"&lt;", '<'}, {"&gt;", '>'}, {"&quot;", '"'}, {"&apos;", '\''}};
    std::string text;
    for (size_t i = 0; i < xml.size();) {
      const auto* const entity =
          std::find_if(std::begin(kEntities), std::end(kEntities), [&](const auto& known) {
            return xml.compare(i, std::string(known.first).size(), known.first) == 0;
          });
      const bool isEntity = entity != std::end(kEntities);
      text += isEntity ? entity->second : xml[i];
      i += isEntity ? std::string(entity->first).size() : 1;
    }
    return text;
  }

  const std::string& text_;
  size_t at_ = 0;
};

std::string decoded(std::string base64) {
  base64.erase(
      std::remove_if(base64.begin(), base64.end(), [](unsigned char c) { return isspace(c) != 0; }),
      base64.end());
  size_t size = 0;
  const Block<unsigned char> bytes(base64_decode(base64.data(), base64.size(), &size));
  return bytes == nullptr ? "" : std::string(reinterpret_cast<const char*>(bytes.get()), size);
}

// Calls `value` with each key of the dictionary that has begun and the tag of its value, which it
// reads to its end.
template <typename Value>
void readDictionary(Reader* reader, const Tag& start, Value value) {
  if (start.name != "dict" || start.isEnd) {
    fail("has a " + start.name + " in place of a dict");
  }
  while (!start.isEmpty) {
    const Tag tag = reader->tag();
    if (tag.isEnd && tag.name == "dict") {
      return;
    }
    if (tag.isEnd || tag.name != "key") {
      fail("has a " + tag.name + " in place of a key");
    }
    const std::string key = reader->text(tag);
    value(key, reader->tag());
  }
}

// A file's entry is a dictionary, or in older lists its digest alone.
SealedFile readFile(Reader* reader, const Tag& start) {
  SealedFile file;
  if (start.name != "dict") {
    reader->skip(start);
    return file;
  }
  readDictionary(reader, start, [&](const std::string& key, const Tag& tag) {
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

}  // namespace

SealedFiles readSealedFiles(const std::string& text) {
  Reader reader(text);
  if (reader.tag().name != "plist") {
    fail("is not a property list");
  }
  SealedFiles files;
  bool isFound = false;
  readDictionary(&reader, reader.tag(), [&](const std::string& key, const Tag& tag) {
    if (key != "files2") {
      reader.skip(tag);
      return;
    }
    isFound = true;
    readDictionary(&reader, tag, [&](const std::string& name, const Tag& entry) {
      files[name] = readFile(&reader, entry);
    });
  });
  if (!isFound) {
    fail("has no entry files2");
  }
  return files;
}

}  // namespace tools
