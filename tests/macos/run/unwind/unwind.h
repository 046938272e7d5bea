#ifndef QUORVANE_TESTS_MACOS_RUN_UNWIND_UNWIND_H
#define QUORVANE_TESTS_MACOS_RUN_UNWIND_UNWIND_H

#include "tests/macos/run/image/image.h"

namespace macrun {

// Tells GCC's unwinder how to leave every function of the image, so that C++ exceptions pass
// through them. Apple's linkers describe most functions in __unwind_info alone, in a form of their
// own, and the rest in __eh_frame; both become one table in the form of the latter, because the
// unwinder wants registered tables not to overlap. After the image is bound.
void registerUnwinding(const Image& image);

}  // namespace macrun

#endif
