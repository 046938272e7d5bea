#include "tests/macos/run/supply/gate.h"

#include <sys/mman.h>

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "tests/macos/run/run.h"
#include "tests/macos/run/stop.h"
#include "tests/macos/run/supply/trace.h"

namespace macrun {

// What a gate's code leads to. The assembly code knows the order of the fields.
struct Gate {
  void* target;
  uint64_t isOpen;  // whether the import is in the trace already
  const char* name;
};
static_assert(offsetof(Gate, target) == 0 && offsetof(Gate, isOpen) == 8);

extern "C" {
extern const uint8_t macrunGateCode[], macrunGateCodeEnd[];
extern const uint8_t macrunGateRecord[];
}

// Called by the gate's code.
extern "C" void macrunOpenGate(Gate* gate) {
  if (gate->target == nullptr) {
    giveUp("missing import %s (needed by %s)", gate->name, executablePath());
  }
  gate->isOpen = 1;
  traceUse("import", gate->name);
}

static Gate* newGate(const char* name, void* target) {
  return new Gate{target, 0, name};
}

// The code of every gate is a copy of the same few instructions, with its own record behind them.
static uint8_t* takeRoom(size_t size) {
  static uint8_t* next = nullptr;
  static size_t left = 0;
  constexpr size_t kRoom = 64 * 1024;
  if (left < size) {
    void* room = mmap(nullptr, kRoom, PROT_READ | PROT_WRITE | PROT_EXEC,
                      MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (room == MAP_FAILED) {
      refuse("no memory for calls of missing imports");
    }
    next = static_cast<uint8_t*>(room);
    left = kRoom;
  }
  uint8_t* taken = next;
  next += size;
  left -= size;
  return taken;
}

void* makeGate(const char* name, void* target) {
  const auto size = static_cast<size_t>(macrunGateCodeEnd - macrunGateCode);
  uint8_t* code = takeRoom(size);
  memcpy(code, macrunGateCode, size);
  Gate* gate = newGate(name, target);
  memcpy(code + (macrunGateRecord - macrunGateCode), &gate, sizeof gate);
  return code;
}

}  // namespace macrun
