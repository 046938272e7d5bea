#ifndef QUORVANE_TESTS_MACOS_RUN_UNWIND_COMPACT_ENCODING_H
#define QUORVANE_TESTS_MACOS_RUN_UNWIND_COMPACT_ENCODING_H

#include "tests/macos/run/unwind/frame_table.h"

namespace macrun {

// How a function is left, in the 32 bits that <mach-o/compact_unwind_encoding.h> describes for
// x86-64.

// Whether the encoding says it by itself; others refer to __eh_frame, or say nothing.
bool describesFrame(uint32_t encoding);

// Adds what the encoding says to a frame whose address is known.
void describeFrame(Frame& frame, uint32_t encoding, const Image& image);

}  // namespace macrun

#endif
