#ifndef QUORVANE_TESTS_UNIT_EXTRACTOR_FULL_DISK_H
#define QUORVANE_TESTS_UNIT_EXTRACTOR_FULL_DISK_H

#include <string>

namespace test {

// The system says that every disk is full while this path exists, and otherwise that it has room.
// Each question prints a line with the answer.
extern std::string diskIsFullWhile;

// How many bytes are free while there is room; at first 4,096,000.
extern unsigned long freeBytes;

}  // namespace test

#endif
