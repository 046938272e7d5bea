#ifndef QUORVANE_TOOLS_SYSTEM_INPUT_ERROR_H
#define QUORVANE_TOOLS_SYSTEM_INPUT_ERROR_H

#include <stdexcept>
#include <string>

namespace tools {

// The input is wrong. The text says what is wrong and where, what was expected and found, and what
// to do; it is printed as it is and the command ends with status 1.
class InputError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// Calls the function and returns its result; prefixes an InputError with the file's name.
template <typename Function>
auto aboutFile(const std::string& path, Function function) {
  try {
    return function();
  } catch (const InputError& error) {
    throw InputError(path + ": " + error.what());
  }
}

// A write failed because the disk is full.
class DiskFullError : public InputError {
 public:
  using InputError::InputError;
};

}  // namespace tools

#endif
