#include "tools/bundle/plist.h"

#include <algorithm>

#include "tools/system/input_error.h"
#include "tools/system/utf8.h"

namespace tools {

PlistValue plistString(std::string text) {
  return {std::move(text)};
}

PlistValue plistBoolean(bool flag) {
  return {flag};
}

PlistValue plistStrings(const std::vector<std::string>& texts) {
  PlistList list;
  for (const std::string& text : texts) {
    list.push_back(plistString(text));
  }
  return {list};
}

// Where the entry is, or belongs.
template <typename Table>
static auto placeOf(Table& table, const std::string& key) {
  return std::lower_bound(
      table.begin(), table.end(), key,
      [](const PlistEntry& entry, const std::string& wanted) { return entry.key < wanted; });
}

void setEntry(PlistTable* table, const std::string& key, PlistValue value) {
  const auto at = placeOf(*table, key);
  if (at != table->end() && at->key == key) {
    at->value = std::move(value);
  } else {
    table->insert(at, {key, std::move(value)});
  }
}

const PlistValue* findEntry(const PlistTable& table, const std::string& key) {
  const auto at = placeOf(table, key);
  return at != table.end() && at->key == key ? &at->value : nullptr;
}

static bool isXmlCharacter(char32_t point) {
  return point >= ' ' ? point != 0xFFFE && point != 0xFFFF
                      : point == '\t' || point == '\n' || point == '\r';
}

std::string faultOfPlistText(const std::string& text) {
  std::u32string points;
  if (!decodeUtf8(text, &points)) {
    return "is not UTF-8";
  }
  return std::all_of(points.begin(), points.end(), isXmlCharacter)
             ? ""
             : "has a control character, which a property list cannot hold";
}

static std::string faultOfEntries(const PlistTable& table) {
  for (const PlistEntry& entry : table) {
    std::string fault = faultOfPlistText(entry.key);
    fault = fault.empty() ? faultOfPlist(entry.value) : fault;
    if (!fault.empty()) {
      return fault;
    }
  }
  return "";
}

std::string faultOfPlist(const PlistValue& value) {
  if (const auto* text = std::get_if<std::string>(&value.content)) {
    return faultOfPlistText(*text);
  }
  if (const auto* list = std::get_if<PlistList>(&value.content)) {
    for (const PlistValue& element : *list) {
      const std::string fault = faultOfPlist(element);
      if (!fault.empty()) {
        return fault;
      }
    }
  }
  const auto* table = std::get_if<PlistTable>(&value.content);
  return table == nullptr ? "" : faultOfEntries(*table);
}

static std::string escaped(const std::string& text) {
  std::string xml;
  for (const char c : text) {
    switch (c) {
      case '&':
        xml += "&amp;";
        break;
      case '<':
        xml += "&lt;";
        break;
      case '>':
        xml += "&gt;";
        break;
      case '\r':  // a parser takes a plain one for a line feed
        xml += "&#13;";
        break;
      default:
        xml += c;
    }
  }
  return xml;
}

namespace {

// Writes one value after another, each on lines of its own, a tab deeper for each table or list.
class PlistWriter {
 public:
  void write(const PlistValue& value) {
    std::visit([this](const auto& content) { write(content); }, value.content);
  }
  void write(const PlistTable& table) {
    open("dict");
    for (const PlistEntry& entry : table) {
      line("<key>" + escaped(entry.key) + "</key>");
      write(entry.value);
    }
    close("dict");
  }
  const std::string& text() const { return text_; }

 private:
  void write(const std::string& content) { line("<string>" + escaped(content) + "</string>"); }
  void write(bool content) { line(content ? "<true/>" : "<false/>"); }
  void write(int64_t content) { line("<integer>" + std::to_string(content) + "</integer>"); }
  void write(const PlistList& list) {
    open("array");
    for (const PlistValue& element : list) {
      write(element);
    }
    close("array");
  }

  void open(const std::string& element) {
    line("<" + element + ">");
    ++depth_;
  }
  void close(const std::string& element) {
    --depth_;
    line("</" + element + ">");
  }
  void line(const std::string& content) { text_ += std::string(depth_, '\t') + content + "\n"; }

  std::string text_;
  size_t depth_ = 0;
};

}  // namespace

std::string encodePlist(const PlistTable& table) {
  const std::string fault = faultOfEntries(table);
  if (!fault.empty()) {
    throw InputError("a text for a property list " + fault);
  }
  PlistWriter writer;
  writer.write(table);
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
         "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
         "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
         "<plist version=\"1.0\">\n" +
         writer.text() + "</plist>\n";
}

}  // namespace tools
