#include "formats/tail_marker.h"

#include <cstdint>
#include <cstring>

#include "support/text/strings.h"

char* marker = nullptr;

// Stores one word of the marker. The empty assembly hides the value, so that compilers keep it as
// an immediate operand instead of gathering neighbours into one constant in the data section.
static inline char* putWord(char* out, uint64_t word) {
  __asm__ volatile("" : "+r"(word));
  memcpy(out, &word, sizeof word);
  return out + sizeof word;
}

char* allocAndInitMarker() {
  char* buffer = static_cast<char*>(allocZeroed(TAIL_MARKER_SIZE));
  char* out = buffer;
  out = putWord(out, 0x641f7a5b502a431d);
  out = putWord(out, 0x503c321724214723);
  out = putWord(out, 0x7b295c2966046c21);
  out = putWord(out, 0x4d0f4f2f33195b0b);
  out = putWord(out, 0x794e391524185827);
  out = putWord(out, 0x0049573d5915762b);
  out = putWord(out, 0x6670102b65052911);
  out = putWord(out, 0x0830437560402d5e);
  out = putWord(out, 0x3b531b407e744a61);
  out = putWord(out, 0x59722c4b1e374656);
  out = putWord(out, 0x2b78442f3c3a4430);
  out = putWord(out, 0x2325733971716526);
  out = putWord(out, 0x4a10703124511410);
  out = putWord(out, 0x21530a062a57050d);
  out = putWord(out, 0x741a293600132c4d);
  putWord(out, 0x63422f2c551a2d47);
  return buffer;
}
