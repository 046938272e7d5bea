#ifndef QUORVANE_TESTS_FAKES_FAULTS_PLAN_H
#define QUORVANE_TESTS_FAKES_FAULTS_PLAN_H

#include <dlfcn.h>

// Counts a call of this kind; returns whether it has to fail, with errno set. Where the plan is
// that the process dies at this call, it does not return.
bool fails(const char* kind);

// Whether calls of this kind are counted at all: what kind one is can be hard to tell.
bool isCounted(const char* kind);

// What the injector itself does is not counted while one of these lives.
class Unwatched {
 public:
  Unwatched();
  ~Unwatched();
  Unwatched(const Unwatched&) = delete;
  Unwatched& operator=(const Unwatched&) = delete;

 private:
  bool before_;
};

// The function of this name that would have been called.
template <typename Function>
Function real(const char* name) {
  const Unwatched self;
  return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

#endif
