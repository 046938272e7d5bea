#ifndef QUORVANE_TESTS_MACOS_RUN_DARWIN_THREADS_H
#define QUORVANE_TESTS_MACOS_RUN_DARWIN_THREADS_H

#include <cstddef>

namespace macrun {

// pthread_attr_t of <sys/_pthread/_pthread_types.h>: the signature, and 56 bytes that only the
// system looks into.
struct DarwinThreadAttributes {
  long signature;
  size_t stackSize;
  int detachState;
  char rest[44];
};
static_assert(sizeof(DarwinThreadAttributes) == 64);

// What a thread gets that is created without attributes: 512 KB, as Apple's "Threading Programming
// Guide" says.
constexpr size_t kDarwinStackSize = 512 * 1024;

constexpr int kDarwinJoinable = 1, kDarwinDetached = 2;  // PTHREAD_CREATE_… of <pthread.h>

}  // namespace macrun

#endif
