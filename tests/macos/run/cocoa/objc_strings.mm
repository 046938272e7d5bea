#import <Foundation/Foundation.h>
#include <objc/runtime.h>

#include <cstring>

#include "tests/macos/run/cocoa/objc_image.h"

namespace macrun {

// A constant string as clang's code generation writes it (__cfstring).
struct MacString {
  Class isa;
  uint32_t flags, padding;
  const void* text;
  uint64_t length;  // in characters
};

// One as GCC's does: NSConstantString of <Foundation/NSString.h>.
struct GnuString {
  Class isa;
  const char* text;  // in UTF-8
  unsigned length;   // in bytes
};
static_assert(sizeof(MacString) == 32 && sizeof(GnuString) <= sizeof(MacString));

static const uint32_t kUtf16 = 0x10;  // in the flags

static GnuString fromUtf16(const MacString& string) {
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  NSString* whole = [NSString stringWithCharacters:static_cast<const unichar*>(string.text)
                                            length:string.length];
  char* text = strdup([whole UTF8String]);
  [pool release];
  return (GnuString){string.isa, text, static_cast<unsigned>(strlen(text))};
}

void convertStrings(const Image& image) {
  const Bytes bytes = sectionBytes(image, "__cfstring");
  uint8_t* first = const_cast<uint8_t*>(bytes.at);
  const size_t count = static_cast<size_t>(bytes.end - bytes.at) / sizeof(MacString);
  for (size_t i = 0; i < count; ++i) {
    uint8_t* place = first + i * sizeof(MacString);
    MacString before;
    memcpy(&before, place, sizeof before);
    GnuString after = {before.isa, static_cast<const char*>(before.text),
                       static_cast<unsigned>(before.length)};
    if ((before.flags & kUtf16) != 0) {
      after = fromUtf16(before);
    }
    memcpy(place, &after, sizeof after);
  }
}

}  // namespace macrun
