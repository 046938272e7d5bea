#ifndef QUORVANE_TESTS_UNIT_ARCHIVE_TRIALS_H
#define QUORVANE_TESTS_UNIT_ARCHIVE_TRIALS_H

#include <string>
#include <vector>

namespace test {

// How the extraction of an archive, signed with the test key "first", came out.
enum class Outcome : char {
  verified = 'V',  // accepted because of its signature
  accepted = 'A',  // accepted without one
  altered = 'X',   // as `verified` or `accepted`, but the destination does not hold what it should
  rejected = 'R',  // the destination was removed
  ended = 'E',     // the process ended with status 1, or 101 for pack200
  crashed = 'C'    // anything else
};

// Says whether the destination of an archive that was not refused holds what it should.
using Judge = bool (*)(const std::string& dest);

// Extracts each of the archives into an empty folder, in child processes, and returns how each came
// out, in order. `isRequired` says whether signatures are. Without a judge any content will do.
std::vector<Outcome> tryArchives(const std::vector<std::string>& archives, bool isRequired,
                                 Judge judge = nullptr);

}  // namespace test

#endif
