#ifndef QUORVANE_TESTS_UNIT_EXTRACTOR_DISTURBED_RENAMES_H
#define QUORVANE_TESTS_UNIT_EXTRACTOR_DISTURBED_RENAMES_H

#include <string>

namespace test {

// What the path of a file or folder must hold for its rename to fail in this executable; empty for
// none.
extern std::string unmovable;

// The rename, from 1, at which the process ends with DIED_AT_A_RENAME; 0 for none. It counts down.
extern int lastRename;
constexpr int DIED_AT_A_RENAME = 99;

}  // namespace test

#endif
