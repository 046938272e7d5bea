#ifndef QUORVANE_TESTS_MACOS_RUN_IMAGE_IMAGE_H
#define QUORVANE_TESTS_MACOS_RUN_IMAGE_IMAGE_H

#include <cstdint>
#include <string>
#include <vector>

#include "tests/macos/run/image/bytes.h"
#include "tests/macos/run/image/mach_o.h"

namespace macrun {

// The x86-64 executable inside a file, mapped for reading.
struct ExecutableFile {
  std::string path;
  int handle;
  uint64_t offset;  // where the executable starts in the file: not 0 in a fat one
  Bytes bytes;
};

// What the load commands say, and where the executable lies in this process.
struct Image {
  std::vector<SegmentCommand> segments;
  std::vector<Section> sections;
  std::vector<std::string> libraries;
  DyldInfoCommand fixups;
  uint64_t entryOffset;  // of the function that main() became, in the file
  uint8_t* slide;        // address in this process = slide + address in the file
  uint8_t* header;       // the mapped file's first byte
};

// All of these refuse an executable that is damaged or needs what the runner does not have.

ExecutableFile openExecutable(const char* path);
Image readLoadCommands(const ExecutableFile& file);
void mapSegments(Image& image, const ExecutableFile& file);
void closeExecutable(ExecutableFile& file);

// Adds the slide to every pointer that the image holds to itself.
void rebase(const Image& image, const ExecutableFile& file);

// Writes the addresses of what the image imports.
void bind(const Image& image, const ExecutableFile& file);

// Gives every segment the protection it asks for; code cannot be run before.
void protectSegments(const Image& image);

// Runs the functions that the image wants run before main().
void runInitializers(const Image& image, int argc, char** argv, char** environment,
                     const char** apple);

// Calls the entry point; returns what it returns.
int runMain(const Image& image, int argc, char** argv, char** environment, const char** apple);

// Returns the section, or nullptr where there is none of that name.
const Section* findSection(const Image& image, const char* name);

// The section's content as it is in memory now; empty if there is no such section.
Bytes sectionBytes(const Image& image, const char* name);

// Whether `size` bytes from `address` on lie in one segment of the mapped image.
bool isInside(const Image& image, const void* address, uint64_t size);

// The slot at `address` of the file, which has to lie in a segment that may be written to.
uint64_t* writableSlot(const Image& image, uint64_t address);

// The distance between slots of a repeated fixup. A negative one, which never ends, is refused.
uint64_t takeSkip(Bytes& code);

// The file's address `offset` bytes into the segment of that index.
uint64_t addressInSegment(const Image& image, unsigned segment, uint64_t offset);

}  // namespace macrun

#endif
