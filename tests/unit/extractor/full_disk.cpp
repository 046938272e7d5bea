#include "tests/unit/extractor/full_disk.h"

#include <sys/statvfs.h>

#include <cstdio>
#include <filesystem>

std::string test::diskIsFullWhile;
unsigned long test::freeBytes = 4096000;

// Takes the place of the C library's function in this executable.
extern "C" int statvfs(const char*, struct statvfs* space) {
  const bool isFull =
      !test::diskIsFullWhile.empty() && std::filesystem::exists(test::diskIsFullWhile);
  puts(isFull ? "The disk is full" : "The disk has room");
  *space = {};
  space->f_frsize = 4096;
  space->f_bavail = isFull ? 0 : test::freeBytes / 4096;
  return 0;
}
