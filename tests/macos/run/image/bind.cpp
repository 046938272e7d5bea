#include "tests/macos/run/image/image.h"
#include "tests/macos/run/stop.h"
#include "tests/macos/run/supply/imports.h"

namespace macrun {

// The opcodes are the upper four bits of a byte, BIND_OPCODE_… in <mach-o/loader.h>.
enum BindOpcode : uint8_t {
  kBindDone = 0x00,
  kBindSetLibrary = 0x10,
  kBindSetLibraryLong = 0x20,
  kBindSetLibrarySpecial = 0x30,
  kBindSetName = 0x40,
  kBindSetType = 0x50,
  kBindSetAddend = 0x60,
  kBindSetSegment = 0x70,
  kBindAdvance = 0x80,
  kBindOnce = 0x90,
  kBindThenAdvance = 0xA0,
  kBindThenAdvanceSlots = 0xB0,
  kBindWithSkips = 0xC0,
};

// The three tables: at the start, at the first call (here at the start too), and for what may be
// defined twice.
enum class Table { kPlain, kLazy, kWeak };

constexpr uint64_t kSlot = sizeof(uint64_t);
constexpr uint8_t kPointerType = 1;  // BIND_TYPE_POINTER
constexpr uint8_t kWeakImport = 1;   // BIND_SYMBOL_FLAGS_WEAK_IMPORT

// What the opcodes have set so far.
struct BindState {
  uint64_t address = 0;
  int64_t addend = 0;
  int64_t library = 0;  // counted from 1; 0 and below mean the executable itself and the like
  const char* name = nullptr;
  bool isWeak = false;
};

static const char* libraryName(const Image& image, const BindState& state) {
  if (state.library < 1) {
    return "";
  }
  if (static_cast<uint64_t>(state.library) > image.libraries.size()) {
    refuse("%s comes from library %lld of %zu", state.name, static_cast<long long>(state.library),
           image.libraries.size());
  }
  return image.libraries[static_cast<size_t>(state.library) - 1].c_str();
}

static void bindSlot(const Image& image, const BindState& state, Table table) {
  uint64_t* slot = writableSlot(image, state.address);
  if (state.name == nullptr) {
    refuse("a bind has no symbol");
  }
  if (table != Table::kWeak) {
    void* address = importAddress(state.name, libraryName(image, state), state.isWeak);
    *slot = reinterpret_cast<uint64_t>(address) + static_cast<uint64_t>(state.addend);
  } else if (*slot == 0) {
    refuse("%s may be replaced from outside and is not in the executable either", state.name);
  }
}

static void bindSlots(const Image& image, BindState& state, Table table, uint64_t count,
                      uint64_t skip) {
  for (uint64_t i = 0; i < count; ++i) {
    bindSlot(image, state, table);
    state.address += kSlot + skip;
  }
}

static void setSymbol(BindState& state, uint8_t flags, Bytes& code) {
  state.name = takeText(code);
  state.isWeak = (flags & kWeakImport) != 0;
}

// Runs one opcode; returns whether the table goes on.
static bool runOpcode(const Image& image, BindState& state, Table table, Bytes& code) {
  const auto byte = take<uint8_t>(code);
  const uint8_t operand = byte & 0x0F;
  switch (byte & 0xF0) {
    case kBindDone:
      return table == Table::kLazy;  // there it only ends an entry
    case kBindSetLibrary:
      state.library = operand;
      return true;
    case kBindSetLibraryLong:
      state.library = static_cast<int64_t>(takeUleb(code));
      return true;
    case kBindSetLibrarySpecial:
      state.library = 0;
      return true;
    case kBindSetName:
      setSymbol(state, operand, code);
      return true;
    case kBindSetType:
      if (operand != kPointerType) {
        refuse("a bind is of type %u", operand);
      }
      return true;
    case kBindSetAddend:
      state.addend = takeSleb(code);
      return true;
    case kBindSetSegment:
      state.address = addressInSegment(image, operand, takeUleb(code));
      return true;
    case kBindAdvance:
      state.address += takeUleb(code);
      return true;
    case kBindOnce:
      bindSlots(image, state, table, 1, 0);
      return true;
    case kBindThenAdvance:
      bindSlots(image, state, table, 1, takeUleb(code));
      return true;
    case kBindThenAdvanceSlots:
      bindSlots(image, state, table, 1, operand * kSlot);
      return true;
    case kBindWithSkips: {
      const uint64_t count = takeUleb(code);
      bindSlots(image, state, table, count, takeSkip(code));
      return true;
    }
    default:
      refuse("a bind has the unknown opcode %#x", byte);
  }
}

static void bindTable(const Image& image, const ExecutableFile& file, Range range, Table table) {
  Bytes code = part(file.bytes, range.offset, range.size);
  BindState state;
  while (code.at < code.end && runOpcode(image, state, table, code)) {
  }
}

void bind(const Image& image, const ExecutableFile& file) {
  bindTable(image, file, image.fixups.binds, Table::kPlain);
  bindTable(image, file, image.fixups.weakBinds, Table::kWeak);
  bindTable(image, file, image.fixups.lazyBinds, Table::kLazy);
}

}  // namespace macrun
