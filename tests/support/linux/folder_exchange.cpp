#include "tests/support/folder_exchange.h"

#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <utility>

bool test::exchangesFail = false;
std::function<void()> test::beforeExchange;

// Takes the place of the C library's function.
extern "C" int renameat2(int from, const char* a, int to, const char* b, unsigned flags) {
  if (test::exchangesFail) {
    errno = EINVAL;
    return -1;
  }
  if (const std::function<void()> action = std::exchange(test::beforeExchange, nullptr)) {
    action();
  }
  return static_cast<int>(syscall(SYS_renameat2, from, a, to, b, flags));
}
