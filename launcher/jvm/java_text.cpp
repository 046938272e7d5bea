#include "launcher/jvm/java_text.h"

static bool isTail(unsigned char byte) {
  return (byte & 0xc0) == 0x80;
}

// Returns the character of four bytes at `text`, or 0 when there is none.
static unsigned long longCharacterAt(const char* text) {
  const auto* bytes = reinterpret_cast<const unsigned char*>(text);
  if (bytes[0] < 0xf0 || bytes[0] > 0xf4) {
    return 0;
  }
  for (int i = 1; i < 4; ++i) {
    if (!isTail(bytes[i])) {  // the text's end among them
      return 0;
    }
  }
  const unsigned long character = (bytes[0] & 0x07ul) << 18 | (bytes[1] & 0x3ful) << 12 |
                                  (bytes[2] & 0x3ful) << 6 | (bytes[3] & 0x3ful);
  return character >= 0x10000 && character <= 0x10ffff ? character : 0;
}

static void appendSurrogate(std::string* out, unsigned long unit) {
  *out += static_cast<char>(0xe0 | unit >> 12);
  *out += static_cast<char>(0x80 | (unit >> 6 & 0x3f));
  *out += static_cast<char>(0x80 | (unit & 0x3f));
}

std::string javaText(const char* text) {
  std::string converted;
  while (*text != 0) {
    if (const unsigned long character = longCharacterAt(text)) {
      appendSurrogate(&converted, 0xd800 + ((character - 0x10000) >> 10));
      appendSurrogate(&converted, 0xdc00 + ((character - 0x10000) & 0x3ff));
      text += 4;
    } else {
      converted += *text++;
    }
  }
  return converted;
}
