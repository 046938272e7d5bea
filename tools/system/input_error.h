#ifndef QUORVANE_TOOLS_SYSTEM_INPUT_ERROR_H
#define QUORVANE_TOOLS_SYSTEM_INPUT_ERROR_H

#include <stdexcept>
#include <string>

namespace tools {

// The input is wrong. The text says what and where, what was expected and found, and what to do; it
// is printed as it is and the command ends with status 1.
class InputError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// Returns what the function returns; in front of what it finds wrong it puts the file's name.
template <typename Function>
auto aboutFile(const std::string& path, Function function) {
  try {
    return function();
  } catch (const InputError& error) {
    throw InputError(path + ": " + error.what());
  }
}

// What could not be written for want of space.
class DiskFullError : public InputError {
 public:
  using InputError::InputError;
};

}  // namespace tools

#endif
