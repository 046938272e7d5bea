#ifndef QUORVANE_TESTS_MACOS_RUN_UNWIND_FRAME_TABLE_H
#define QUORVANE_TESTS_MACOS_RUN_UNWIND_FRAME_TABLE_H

#include <cstdint>
#include <vector>

#include "tests/macos/run/image/image.h"

namespace macrun {

// How one function is left, in the terms of DWARF's call frame information. Addresses are those in
// this process.
struct Frame {
  uint64_t begin, size;
  uint64_t personality;  // the function that decides about exceptions, or 0
  uint64_t languageData;
  uint64_t codeAlignment = 1;
  int64_t dataAlignment = -8;
  std::vector<uint8_t> first;  // instructions of what is common to several functions
  std::vector<uint8_t> then;   // the function's own
};

// A table of frames in the form of an .eh_frame section.
struct FrameTable {
  std::vector<uint8_t> bytes;
};

void appendUleb(std::vector<uint8_t>& bytes, uint64_t value);
void appendSleb(std::vector<uint8_t>& bytes, int64_t value);
void appendFrame(FrameTable& table, const Frame& frame);
void endTable(FrameTable& table);

// Adds the frames of __eh_frame, and those of __unwind_info that do not refer to it.
void addDwarfFrames(FrameTable& table, const Image& image);
void addCompactFrames(FrameTable& table, const Image& image);

}  // namespace macrun

#endif
