#include <fcntl.h>
#include <sys/stdio.h>

#include <cstdio>

#include "tests/support/swapper.h"

// Not through the function that a test may have put its own in the place of.
bool test::swap(const std::string& one, const std::string& other) {
  return renameatx_np(AT_FDCWD, one.c_str(), AT_FDCWD, other.c_str(), RENAME_SWAP) == 0;
}
