#ifndef QUORVANE_TOOLS_BUNDLE_PLIST_READER_H
#define QUORVANE_TOOLS_BUNDLE_PLIST_READER_H

#include <functional>
#include <string>

// Property lists in XML, read element by element.

namespace tools {

struct PlistTag {
  std::string name;
  bool isEnd = false;    // </name>
  bool isEmpty = false;  // <name/>
};

// Knows what property lists consist of and no more of XML: no attributes that matter, no declared
// entities. All functions throw InputError, with a text for appending to the list's name, if the
// list breaks off or contains something else than they read.
class PlistReader {
 public:
  // Keeps a reference to the text.
  explicit PlistReader(const std::string& text);

  // Passes over what precedes the list's outermost value, and returns the tag of that value.
  PlistTag start();

  // Returns the text up to the end of the element that `tag` begins, without the entities.
  std::string text(const PlistTag& tag);

  // Passes over the rest of the element that `tag` begins.
  void skip(const PlistTag& tag);

  // Calls `take` with each key of the table that `start` begins and the tag of its value, which
  // `take` reads to its end.
  void table(const PlistTag& start,
             const std::function<void(const std::string& key, const PlistTag& value)>& take);

 private:
  PlistTag tag();

  const std::string& text_;
  size_t at_ = 0;
};

}  // namespace tools

#endif
