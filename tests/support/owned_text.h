#ifndef QUORVANE_TESTS_SUPPORT_OWNED_TEXT_H
#define QUORVANE_TESTS_SUPPORT_OWNED_TEXT_H

#include <cstdlib>
#include <string>

namespace test {

// Takes a text that the caller owns, and frees it.
inline std::string takeText(char* text) {
  std::string copy = text;
  free(text);
  return copy;
}

}  // namespace test

#endif
