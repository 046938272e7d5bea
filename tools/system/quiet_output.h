#ifndef QUORVANE_TOOLS_SYSTEM_QUIET_OUTPUT_H
#define QUORVANE_TOOLS_SYSTEM_QUIET_OUTPUT_H

#include "support/owned.h"

namespace tools {

// As long as it lives, standard output of the product's functions goes to the file `out`, by
// default nowhere, and their standard error is dropped. Objects do not nest.
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
