#ifndef QUORVANE_TOOLS_INPUT_ERROR_H
#define QUORVANE_TOOLS_INPUT_ERROR_H

#include <stdexcept>

namespace tools {

// The input is wrong. The text says what and where, what was expected and found, and what to do; it
// is printed as it is and the command ends with status 1.
class InputError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace tools

#endif
