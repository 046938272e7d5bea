#include "tests/macos/run/unwind/compact_encoding.h"

#include <cstring>

#include "tests/macos/run/stop.h"

namespace macrun {

// UNWIND_X86_64_MODE_…, shifted down.
enum Mode { kFramePointer = 1, kSmallStack = 2, kLargeStack = 3 };

// The numbers of rbx, r12 to r15 and rbp in DWARF; the index is that of UNWIND_X86_64_REG_….
static constexpr uint8_t kDwarfRegisters[] = {0, 3, 12, 13, 14, 15, 6};
constexpr uint8_t kDwarfFramePointer = 6, kDwarfStackPointer = 7, kDwarfReturn = 16;
constexpr unsigned kSavedRegisters = 6;

// DW_CFA_def_cfa: the frame's end is `offset` bytes from where `reg` points.
static void defineFrameEnd(Frame& frame, uint8_t reg, uint64_t offset) {
  frame.then.push_back(0x0C);
  frame.then.push_back(reg);
  appendUleb(frame.then, offset);
}

// DW_CFA_offset: the register was saved `words` words before the frame's end.
static void savedAt(Frame& frame, uint8_t reg, uint64_t words) {
  frame.then.push_back(static_cast<uint8_t>(0x80 | reg));
  appendUleb(frame.then, words);
}

static void describeFramePointer(Frame& frame, uint32_t encoding) {
  defineFrameEnd(frame, kDwarfFramePointer, 16);
  savedAt(frame, kDwarfReturn, 1);
  savedAt(frame, kDwarfFramePointer, 2);
  const uint32_t offset = encoding >> 16 & 0xFF;
  for (uint32_t i = 0; i < 5; ++i) {
    const uint32_t reg = encoding >> 3 * i & 7;
    if (reg > kSavedRegisters || (reg != 0 && i > offset)) {
      refuse("__unwind_info: a frame saves register %u in word %u", reg, offset);
    }
    if (reg != 0) {
      savedAt(frame, kDwarfRegisters[reg], offset - i + 2);
    }
  }
}

// Which registers are saved in which order is one number: the index of a permutation. Fills
// `registers` with their UNWIND_X86_64_REG_… numbers.
static void decodeOrder(uint32_t order, unsigned count, uint8_t* registers) {
  bool used[kSavedRegisters + 1] = {};
  for (unsigned i = 0; i < count; ++i) {
    uint32_t weight = 1;  // the number of ways to choose what follows
    for (unsigned left = i + 1; left < count; ++left) {
      weight *= kSavedRegisters - left;
    }
    uint32_t choice = order / weight;
    order %= weight;
    for (uint8_t reg = 1; reg <= kSavedRegisters; ++reg) {
      if (!used[reg] && choice-- == 0) {
        used[reg] = true;
        registers[i] = reg;
        break;
      }
    }
    if (registers[i] == 0) {
      refuse("__unwind_info: a frame saves its registers in an order that does not exist");
    }
  }
}

// The size of a large stack is the operand of the subtraction at the function's start.
static uint64_t stackSize(const Frame& frame, uint32_t encoding, Mode mode, const Image& image) {
  const uint64_t words = encoding >> 16 & 0xFF;
  if (mode == kSmallStack) {
    return words * 8;
  }
  const auto* operand = reinterpret_cast<const uint8_t*>(frame.begin + words);
  uint32_t size = 0;
  if (!isInside(image, operand, sizeof size)) {
    refuse("__unwind_info: a function lies outside the executable");
  }
  memcpy(&size, operand, sizeof size);
  return size + (encoding >> 13 & 7) * uint64_t{8};
}

static void describeStack(Frame& frame, uint32_t encoding, Mode mode, const Image& image) {
  const unsigned count = encoding >> 10 & 7;
  if (count > kSavedRegisters) {
    refuse("__unwind_info: a frame saves %u registers", count);
  }
  uint8_t registers[kSavedRegisters] = {};
  decodeOrder(encoding & 0x3FF, count, registers);
  defineFrameEnd(frame, kDwarfStackPointer, stackSize(frame, encoding, mode, image));
  savedAt(frame, kDwarfReturn, 1);
  for (unsigned i = 0; i < count; ++i) {
    savedAt(frame, kDwarfRegisters[registers[i]], count - i + 1);
  }
}

static int modeOf(uint32_t encoding) {
  return static_cast<int>(encoding >> 24 & 0xF);
}

bool describesFrame(uint32_t encoding) {
  return modeOf(encoding) >= kFramePointer && modeOf(encoding) <= kLargeStack;
}

void describeFrame(Frame& frame, uint32_t encoding, const Image& image) {
  if (modeOf(encoding) == kFramePointer) {
    describeFramePointer(frame, encoding);
  } else {
    describeStack(frame, encoding, static_cast<Mode>(modeOf(encoding)), image);
  }
}

}  // namespace macrun
