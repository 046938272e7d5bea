#include "tools/system/utf8.h"

namespace tools {

namespace {
struct Lead {
  int following;      // bytes after the first one
  char32_t bits;      // of the first byte
  char32_t smallest;  // a smaller code point has a shorter form
};
}  // namespace

static bool readLead(unsigned char byte, Lead* lead) {
  if (byte < 0x80) {
    *lead = {0, byte, 0};
  } else if (byte >= 0xC0 && byte < 0xE0) {
    *lead = {1, byte & 0x1Fu, 0x80};
  } else if (byte >= 0xE0 && byte < 0xF0) {
    *lead = {2, byte & 0x0Fu, 0x800};
  } else if (byte >= 0xF0 && byte < 0xF8) {
    *lead = {3, byte & 0x07u, 0x10000};
  } else {
    return false;
  }
  return true;
}

bool decodeUtf8(const std::string& text, std::u32string* points) {
  for (size_t at = 0; at < text.size();) {
    Lead lead{};
    if (!readLead(static_cast<unsigned char>(text[at++]), &lead)) {
      return false;
    }
    char32_t point = lead.bits;
    for (int i = 0; i < lead.following; ++i, ++at) {
      // The zero at the end of the text continues nothing.
      const auto byte = static_cast<unsigned char>(at < text.size() ? text[at] : 0);
      if ((byte & 0xC0) != 0x80) {
        return false;
      }
      point = point << 6 | (byte & 0x3Fu);
    }
    if (point < lead.smallest || point > 0x10FFFF || (point >= 0xD800 && point <= 0xDFFF)) {
      return false;
    }
    points->push_back(point);
  }
  return true;
}

}  // namespace tools
