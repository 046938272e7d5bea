// Allocations, that tests/fakes/faults/plan.cpp may let fail. Those of the program's own code,
// which are a few hundred, are told from those of the libraries, the toolkit's many thousand above
// all.

#include <link.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "tests/fakes/faults/plan.h"

namespace {

struct Code {
  uintptr_t start;
  uintptr_t end;
};

// The program, and the C++ library, which allocates in its name.
Code ownCode[2];

void keepCode(const dl_phdr_info& object, Code* code) {
  for (int i = 0; i < object.dlpi_phnum; ++i) {
    const ElfW(Phdr)& segment = object.dlpi_phdr[i];
    if (segment.p_type == PT_LOAD && (segment.p_flags & PF_X) != 0) {
      code->start = object.dlpi_addr + segment.p_vaddr;
      code->end = code->start + segment.p_memsz;
    }
  }
}

int findCode(dl_phdr_info* object, size_t, void*) {
  if (object->dlpi_name[0] == '\0' && ownCode[0].end == 0) {
    keepCode(*object, &ownCode[0]);
  } else if (strstr(object->dlpi_name, "/libstdc++") != nullptr) {
    keepCode(*object, &ownCode[1]);
  }
  return 0;
}

__attribute__((constructor)) void findOwnCode() {
  const Unwatched self;
  dl_iterate_phdr(findCode, nullptr);
}

bool cannotAllocate(const void* caller) {
  const uintptr_t address = reinterpret_cast<uintptr_t>(caller);
  for (const Code& code : ownCode) {
    if (address >= code.start && address < code.end) {
      return fails("malloc");
    }
  }
  return fails("heap");
}

}  // namespace

extern "C" {

void* __libc_malloc(size_t);
void* __libc_calloc(size_t, size_t);
void* __libc_realloc(void*, size_t);

void* malloc(size_t size) {
  return cannotAllocate(__builtin_return_address(0)) ? nullptr : __libc_malloc(size);
}

void* calloc(size_t count, size_t size) {
  return cannotAllocate(__builtin_return_address(0)) ? nullptr : __libc_calloc(count, size);
}

void* realloc(void* block, size_t size) {
  return cannotAllocate(__builtin_return_address(0)) ? nullptr : __libc_realloc(block, size);
}

}  // extern "C"
