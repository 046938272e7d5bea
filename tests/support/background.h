#ifndef QUORVANE_TESTS_SUPPORT_BACKGROUND_H
#define QUORVANE_TESTS_SUPPORT_BACKGROUND_H

#include <sys/types.h>

#include <string>

#include "tests/support/process.h"
#include "tests/support/temp_folder.h"

namespace test {

// A program that runs beside the test, a server for example, until it goes out of scope. Its whole
// process group is killed then, and it is killed when the test's process dies.
class Background {
 public:
  explicit Background(const Command& command);
  ~Background();
  Background(const Background&) = delete;
  Background& operator=(const Background&) = delete;

  // What it has printed so far.
  std::string out() const;
  std::string err() const;

  // Waits for a line on its standard output that begins with `start` and returns what follows; the
  // test fails when there is none after 30 seconds.
  std::string waitForLine(const std::string& start) const;

 private:
  TempFolder folder_;
  pid_t child_;
};

// A virtual screen of 1280 × 800 points of its own, so that windows of tests that run at the same
// time cannot cover each other, and no DISPLAY is needed.
class OwnDisplay {
 public:
  OwnDisplay();
  const std::string& name() const { return name_; }  // for DISPLAY

 private:
  Background server_;
  std::string name_;
};

}  // namespace test

#endif
