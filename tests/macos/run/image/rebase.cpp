#include "tests/macos/run/image/image.h"
#include "tests/macos/run/stop.h"

namespace macrun {

// The opcodes are the upper four bits of a byte, REBASE_OPCODE_… in <mach-o/loader.h>.
enum RebaseOpcode : uint8_t {
  kRebaseDone = 0x00,
  kRebaseSetType = 0x10,
  kRebaseSetSegment = 0x20,
  kRebaseAdvance = 0x30,
  kRebaseAdvanceSlots = 0x40,
  kRebaseTimes = 0x50,
  kRebaseManyTimes = 0x60,
  kRebaseThenAdvance = 0x70,
  kRebaseWithSkips = 0x80,
};

constexpr uint64_t kSlot = sizeof(uint64_t);
constexpr uint8_t kPointerType = 1;  // REBASE_TYPE_POINTER

// Rebases `count` slots from `address` on, with `skip` bytes behind each; returns what follows.
static uint64_t rebaseSlots(const Image& image, uint64_t address, uint64_t count, uint64_t skip) {
  for (uint64_t i = 0; i < count; ++i) {
    *writableSlot(image, address) += reinterpret_cast<uint64_t>(image.slide);
    address += kSlot + skip;
  }
  return address;
}

void rebase(const Image& image, const ExecutableFile& file) {
  Bytes code = part(file.bytes, image.fixups.rebases.offset, image.fixups.rebases.size);
  uint64_t address = 0;
  while (code.at < code.end) {
    const auto byte = take<uint8_t>(code);
    const uint8_t operand = byte & 0x0F;
    switch (byte & 0xF0) {
      case kRebaseDone:
        return;
      case kRebaseSetType:
        if (operand != kPointerType) {
          refuse("a rebase is of type %u", operand);
        }
        break;
      case kRebaseSetSegment:
        address = addressInSegment(image, operand, takeUleb(code));
        break;
      case kRebaseAdvance:
        address += takeUleb(code);
        break;
      case kRebaseAdvanceSlots:
        address += operand * kSlot;
        break;
      case kRebaseTimes:
        address = rebaseSlots(image, address, operand, 0);
        break;
      case kRebaseManyTimes:
        address = rebaseSlots(image, address, takeUleb(code), 0);
        break;
      case kRebaseThenAdvance:
        address = rebaseSlots(image, address, 1, takeUleb(code));
        break;
      case kRebaseWithSkips: {
        const uint64_t count = takeUleb(code);
        address = rebaseSlots(image, address, count, takeSkip(code));
        break;
      }
      default:
        refuse("a rebase has the unknown opcode %#x", byte);
    }
  }
}

}  // namespace macrun
