#include "tests/support/folder_exchange.h"

#include <fcntl.h>
#include <sys/stdio.h>

#include <cerrno>
#include <cstdio>
#include <utility>

bool test::exchangesFail = false;
std::function<void()> test::beforeExchange;

// Takes the place of the system's function.
extern "C" int renamex_np(const char* a, const char* b, unsigned flags) {
  if (test::exchangesFail) {
    errno = ENOTSUP;
    return -1;
  }
  if (const std::function<void()> action = std::exchange(test::beforeExchange, nullptr)) {
    action();
  }
  return renameatx_np(AT_FDCWD, a, AT_FDCWD, b, flags);
}
