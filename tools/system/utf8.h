#ifndef QUORVANE_TOOLS_SYSTEM_UTF8_H
#define QUORVANE_TOOLS_SYSTEM_UTF8_H

#include <string>

namespace tools {

// Appends the code points of `text` to `points`. Returns false if the text is not UTF-8; sequences
// that are longer than necessary, surrogates and numbers above U+10FFFF are not.
[[nodiscard]] bool decodeUtf8(const std::string& text, std::u32string* points);

}  // namespace tools

#endif
