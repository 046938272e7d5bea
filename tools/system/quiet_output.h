#ifndef QUORVANE_TOOLS_SYSTEM_QUIET_OUTPUT_H
#define QUORVANE_TOOLS_SYSTEM_QUIET_OUTPUT_H

#include "support/owned.h"

namespace tools {

// As long as it lives, what the product's functions print on standard output goes to the file
// `out`, by default nowhere, and what they print on standard error is dropped. Objects do not nest.
class QuietOutput {
 public:
  explicit QuietOutput(const char* out = "/dev/null");
  ~QuietOutput();
  QuietOutput(const QuietOutput&) = delete;
  QuietOutput& operator=(const QuietOutput&) = delete;

 private:
  Descriptor out_;
  Descriptor err_;
};

}  // namespace tools

#endif
