#ifndef QUORVANE_TOOLS_SYSTEM_FIXED_TIME_H
#define QUORVANE_TOOLS_SYSTEM_FIXED_TIME_H

namespace tools {

// Returns the time in the variable SOURCE_DATE_EPOCH, in seconds since the start of 1970, or -1 if
// it is not set. Throws InputError if it is not such a number.
long fixedTime();

}  // namespace tools

#endif
