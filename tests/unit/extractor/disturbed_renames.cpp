#include "tests/unit/extractor/disturbed_renames.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

namespace test {

std::string unmovable;
int lastRename = 0;

}  // namespace test

// Takes the place of the C library's function in this executable.
extern "C" int rename(const char* from, const char* to) {
  if (test::lastRename > 0 && --test::lastRename == 0) {
    _exit(test::DIED_AT_A_RENAME);
  }
  if (!test::unmovable.empty() && std::string(from).find(test::unmovable) != std::string::npos) {
    errno = EXDEV;
    return -1;
  }
  return renameat(AT_FDCWD, from, AT_FDCWD, to);
}
