#include "tools/system/fixed_time.h"

#include <cstdlib>
#include <string>

#include "tools/system/input_error.h"

namespace tools {

long fixedTime() {
  const char* text = getenv("SOURCE_DATE_EPOCH");
  if (text == nullptr || *text == '\0') {
    return -1;
  }
  const std::string digits = text;
  constexpr size_t kMostDigits = 11;
  if (digits.size() > kMostDigits || digits.find_first_not_of("0123456789") != std::string::npos) {
    throw InputError("SOURCE_DATE_EPOCH is \"" + digits +
                     "\"; it is a number of seconds since the start of 1970");
  }
  return atol(text);
}

}  // namespace tools
