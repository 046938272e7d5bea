// A library to be preloaded that makes calls fail, or the process die at one. QUORVANE_FAULT is one
// of
//   KIND:N:ERROR   the N-th call of that kind (from 1) fails with that error number,
//   KIND:N:ERROR+  that one and all that follow it fail,
//   KIND:N:kill    the process ends there at once.
// With N = 0 nothing fails. The file that QUORVANE_FAULT_COUNT names holds two numbers of eight
// bytes: how many calls of the kind there were, and how many of them failed or ended the process.
// Only the process whose program is named "Setup" is meddled with.
//
// Kinds: open, scan (the program's own executable), read (anything else), log (what is written to
// the log file), write (to anything else), close, rename, delete, link, mkdir, chmod, look (at a
// file's state), list (a folder's names), spawn, wait, malloc (what the program's own code
// allocates), heap (what its libraries allocate).
#include "tests/fakes/faults/plan.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/mman.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <cstring>

namespace {

struct Counts {
  std::atomic<uint64_t> met;
  std::atomic<uint64_t> hit;
};

struct Plan {
  char kind[16];
  uint64_t at;
  int error;  // -1 for kill
  bool lasts;
  Counts* counts;
};

Plan plan{};
std::atomic<bool> active{false};
__thread bool unwatched = false;

bool openCounts() {
  const int file = open(getenv("QUORVANE_FAULT_COUNT"), O_RDWR | O_CREAT, 0600);
  if (file < 0 || ftruncate(file, sizeof(Counts)) != 0) {
    return false;
  }
  void* page = mmap(nullptr, sizeof(Counts), PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
  close(file);
  plan.counts = static_cast<Counts*>(page);
  return page != MAP_FAILED;
}

bool readPlan() {
  const char* text = getenv("QUORVANE_FAULT");
  const char* colon = text == nullptr ? nullptr : strchr(text, ':');
  if (colon == nullptr || strcmp(program_invocation_short_name, "Setup") != 0) {
    return false;
  }
  memcpy(plan.kind, text, static_cast<size_t>(colon - text));
  char* end = nullptr;
  plan.at = strtoull(colon + 1, &end, 10);
  plan.error = strcmp(end, ":kill") == 0 ? -1 : atoi(end + 1);
  plan.lasts = end[strlen(end) - 1] == '+';
  return openCounts();
}

__attribute__((constructor)) void prepare() {
  const Unwatched self;
  active = readPlan();
}

}  // namespace

Unwatched::Unwatched() : before_(unwatched) {
  unwatched = true;
}

Unwatched::~Unwatched() {
  unwatched = before_;
}

bool isCounted(const char* kind) {
  return active && !unwatched && strcmp(plan.kind, kind) == 0;
}

bool fails(const char* kind) {
  if (!isCounted(kind)) {
    return false;
  }
  const uint64_t count = ++plan.counts->met;
  if (plan.at == 0 || (plan.lasts ? count < plan.at : count != plan.at)) {
    return false;
  }
  ++plan.counts->hit;
  if (plan.error < 0) {
    kill(getpid(), SIGKILL);
  }
  errno = plan.error;
  return true;
}
