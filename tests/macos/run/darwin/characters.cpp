#include <cctype>
#include <cstdint>
#include <cstring>

#include "tests/macos/run/supply/supply.h"
#include "tests/macos/run/supply/tables.h"

namespace macrun {

// _RuneLocale of <runetype.h>: what isalpha() and its like, compiled into an executable, look at.
struct DarwinCharacters {
  char magic[8], encoding[32];
  void *get, *put;
  int32_t invalid;
  uint32_t kinds[256];
  int32_t lower[256], upper[256];
  char rest[96];
};
static_assert(offsetof(DarwinCharacters, kinds) == 60 &&
              offsetof(DarwinCharacters, lower) == 1084 &&
              offsetof(DarwinCharacters, upper) == 2108);

// _CTYPE_… of <_ctype.h>.
struct Kind {
  int (*test)(int);
  uint32_t bit;
};

static constexpr Kind kKinds[] = {
    {isalpha, 0x100},    {iscntrl, 0x200},   {isdigit, 0x400},   {isgraph, 0x800},
    {islower, 0x1000},   {ispunct, 0x2000},  {isspace, 0x4000},  {isupper, 0x8000},
    {isxdigit, 0x10000}, {isblank, 0x20000}, {isprint, 0x40000},
};

static constexpr int kCharacters = 256, kAscii = 128;

// The eight lowest bits are the value of a digit.
static uint32_t digitValue(int character) {
  if (isdigit(character)) {
    return static_cast<uint32_t>(character - '0');
  }
  return isxdigit(character) ? static_cast<uint32_t>(tolower(character) - 'a' + 10) : 0;
}

static uint32_t kindsOf(int character) {
  uint32_t kinds = digitValue(character);
  for (const Kind& kind : kKinds) {
    kinds |= kind.test(character) != 0 ? kind.bit : 0;
  }
  return kinds;
}

static DarwinCharacters makeCharacters() {
  DarwinCharacters made{};
  memcpy(made.magic, "RuneMagA", sizeof made.magic);
  strcpy(made.encoding, "NONE");
  for (int i = 0; i < kCharacters; ++i) {
    const bool isAscii = i < kAscii;
    made.kinds[i] = isAscii ? kindsOf(i) : 0;
    made.lower[i] = isAscii ? tolower(i) : i;
    made.upper[i] = isAscii ? toupper(i) : i;
  }
  return made;
}

static DarwinCharacters characters = makeCharacters();

static int hasKind(int character, unsigned long bits) {
  const bool isKnown = character >= 0 && character < kCharacters;
  return isKnown ? static_cast<int>(characters.kinds[character] & bits) : 0;
}

static constexpr Supplied kCharacterSymbols[] = {
    data<&characters>("__DefaultRuneLocale"),
    function<hasKind>("___maskrune"),
    function<static_cast<int (*)(int)>(tolower)>("___tolower"),
    function<static_cast<int (*)(int)>(toupper)>("___toupper"),
    function<static_cast<int (*)(int)>(tolower)>("_tolower"),
    function<static_cast<int (*)(int)>(toupper)>("_toupper"),
};
const SupplyTable kCharacterTable = tableOf(kCharacterSymbols);

}  // namespace macrun
