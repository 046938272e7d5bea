#include "tools/bundle/plist_reader.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "tools/system/input_error.h"
#include "tools/system/texts.h"

namespace tools {

[[noreturn]] static void fail(const std::string& what) {
  throw InputError(what);
}

static std::string withoutEntities(const std::string& xml) {
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

PlistReader::PlistReader(const std::string& text) : text_(text) {}

PlistTag PlistReader::tag() {
  size_t open = 0;
  do {
    open = text_.find('<', at_);
    const bool isComment = open != std::string::npos && text_.compare(open, 4, "<!--") == 0;
    at_ = open == std::string::npos ? open : text_.find(isComment ? "-->" : ">", open);
    if (at_ == std::string::npos) {
      fail("breaks off");
    }
    at_ += isComment ? 3 : 1;
  } while (text_[open + 1] == '?' || text_[open + 1] == '!');
  PlistTag tag;
  tag.name = text_.substr(open + 1, at_ - open - 2);
  tag.isEnd = startsWith(tag.name, "/");
  tag.isEmpty = endsWith(tag.name, "/");
  tag.name.erase(0, tag.isEnd ? 1 : 0);
  tag.name = tag.name.substr(0, tag.name.find_first_of(" \t\r\n/"));
  return tag;
}

PlistTag PlistReader::start() {
  if (tag().name != "plist") {
    fail("is not a property list");
  }
  return tag();
}

std::string PlistReader::text(const PlistTag& tag) {
  if (tag.isEmpty) {
    return "";
  }
  const size_t end = text_.find('<', at_);
  const std::string found = text_.substr(at_, end == std::string::npos ? end : end - at_);
  const PlistTag close = this->tag();
  if (!close.isEnd || close.name != tag.name) {
    fail("has a <" + tag.name + "> that does not end");
  }
  return withoutEntities(found);
}

void PlistReader::skip(const PlistTag& tag) {
  for (int depth = tag.isEmpty ? 0 : 1; depth > 0;) {
    const PlistTag next = this->tag();
    depth += next.isEmpty ? 0 : next.isEnd ? -1 : 1;
  }
}

void PlistReader::table(const PlistTag& start,
                        const std::function<void(const std::string&, const PlistTag&)>& take) {
  if (start.name != "dict" || start.isEnd) {
    fail("has <" + start.name + "> in place of <dict>");
  }
  while (!start.isEmpty) {
    const PlistTag tag = this->tag();
    if (tag.isEnd && tag.name == "dict") {
      return;
    }
    if (tag.isEnd || tag.name != "key") {
      fail("has <" + tag.name + "> in place of <key>");
    }
    const std::string key = text(tag);
    take(key, this->tag());
  }
}

}  // namespace tools
