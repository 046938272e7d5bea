// Included by every file that scripts/mutate weaves: its mutants are all compiled at once, and the
// page says which one is what the process runs. Nothing is changed where there is no page.
#pragma once

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>
#include <cerrno>
#include <cstring>

// Shared by all processes of a test: the number of the mutant, or 0; the name of the program in
// which it is not changed, the test that makes the files for the product; a byte for each mutant
// that was reached.
struct MutantPage {
  int chosen;
  char spared[60];
  unsigned char reached[65536 - 64];
};

inline volatile MutantPage* mutantPage = nullptr;

// In every file, since whichever comes first has to be in time for the others' own variables.
__attribute__((constructor(101))) static void mapMutantPage() {
  const int handle =
      mutantPage == nullptr ? open("/dev/shm/quorvane-mutant", O_RDWR | O_CLOEXEC) : -1;
  if (handle < 0) {
    return;
  }
  void* page = mmap(nullptr, sizeof(MutantPage), PROT_READ | PROT_WRITE, MAP_SHARED, handle, 0);
  close(handle);
  if (page != MAP_FAILED &&
      strcmp(static_cast<MutantPage*>(page)->spared, program_invocation_short_name) != 0) {
    mutantPage = static_cast<volatile MutantPage*>(page);
  }
}

static inline bool isMutant(int number) {
  if (mutantPage == nullptr) {
    return false;
  }
  mutantPage->reached[number] = 1;
  return mutantPage->chosen == number;
}
