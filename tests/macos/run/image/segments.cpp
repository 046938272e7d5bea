#include <sys/mman.h>

#include <cerrno>
#include <cstring>

#include "tests/macos/run/image/image.h"
#include "tests/macos/run/stop.h"

namespace macrun {

constexpr uint64_t kPage = 4096;
constexpr uint64_t kLargestImage = uint64_t{1} << 32;

static uint64_t roundUp(uint64_t size) {
  return (size + kPage - 1) / kPage * kPage;
}

// The zero page, which catches null pointers, takes no room here: Linux keeps its own.
static bool takesRoom(const SegmentCommand& segment) {
  return segment.protection != 0 && segment.memorySize > 0;
}

static uint8_t* reserveRoom(uint64_t first, uint64_t end, const char* path) {
  if (end <= first || end - first > kLargestImage) {
    refuse("%s: takes %#llx bytes of memory", path, static_cast<unsigned long long>(end - first));
  }
  void* room =
      mmap(nullptr, end - first, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
  if (room == MAP_FAILED) {
    refuse("%s: no memory for it: %s", path, strerror(errno));
  }
  return static_cast<uint8_t*>(room) - first;
}

static void mapPages(uint8_t* at, uint64_t size, int flags, int handle, uint64_t offset) {
  if (mmap(at, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_FIXED | flags, handle,
           static_cast<off_t>(offset)) == MAP_FAILED) {
    refuse("a segment cannot be mapped: %s", strerror(errno));
  }
}

static void mapSegment(const Image& image, const SegmentCommand& segment,
                       const ExecutableFile& file) {
  uint8_t* at = image.slide + segment.address;
  const uint64_t inFile = roundUp(segment.fileSize), inMemory = roundUp(segment.memorySize);
  if (inFile > 0) {
    mapPages(at, inFile, 0, file.handle, file.offset + segment.fileOffset);
  }
  if (segment.fileSize < segment.memorySize) {
    memset(at + segment.fileSize, 0, inFile - segment.fileSize);
  }
  if (inMemory > inFile) {
    mapPages(at + inFile, inMemory - inFile, MAP_ANONYMOUS, -1, 0);
  }
}

void mapSegments(Image& image, const ExecutableFile& file) {
  uint64_t first = ~uint64_t{0}, end = 0;
  for (const SegmentCommand& segment : image.segments) {
    if (takesRoom(segment)) {
      first = first < segment.address ? first : segment.address;
      end = roundUp(segment.address + segment.memorySize);
    }
  }
  image.slide = reserveRoom(first, end, file.path.c_str());
  for (const SegmentCommand& segment : image.segments) {
    if (!takesRoom(segment)) {
      continue;
    }
    mapSegment(image, segment, file);
    if (segment.fileOffset == 0 && segment.fileSize > 0) {
      image.header = image.slide + segment.address;
    }
  }
}

static int protectionOf(const SegmentCommand& segment) {
  if ((segment.flags & kReadOnlyLater) != 0) {
    return PROT_READ;
  }
  const int wanted = segment.protection;
  return ((wanted & kReadable) != 0 ? PROT_READ : 0) |
         ((wanted & kWritable) != 0 ? PROT_WRITE : 0) |
         ((wanted & kExecutable) != 0 ? PROT_EXEC : 0);
}

void protectSegments(const Image& image) {
  for (const SegmentCommand& segment : image.segments) {
    if (takesRoom(segment) && mprotect(image.slide + segment.address, roundUp(segment.memorySize),
                                       protectionOf(segment)) != 0) {
      refuse("segment %.16s cannot be protected: %s", segment.name, strerror(errno));
    }
  }
}

uint64_t* writableSlot(const Image& image, uint64_t address) {
  for (const SegmentCommand& segment : image.segments) {
    const uint64_t offset = address - segment.address;
    if (takesRoom(segment) && (segment.protection & kWritable) != 0 && address >= segment.address &&
        segment.memorySize >= sizeof(uint64_t) && offset <= segment.memorySize - sizeof(uint64_t)) {
      return reinterpret_cast<uint64_t*>(image.slide + address);
    }
  }
  refuse("a fixup at %#llx lies outside the segments that may be written to",
         static_cast<unsigned long long>(address));
}

uint64_t addressInSegment(const Image& image, unsigned segment, uint64_t offset) {
  if (segment >= image.segments.size()) {
    refuse("a fixup is in segment %u of %zu", segment, image.segments.size());
  }
  return image.segments[segment].address + offset;
}

uint64_t takeSkip(Bytes& code) {
  const uint64_t skip = takeUleb(code);
  if (skip > kLargestImage) {
    refuse("%s: a repeated fixup skips %#llx bytes", code.what,
           static_cast<unsigned long long>(skip));
  }
  return skip;
}

bool isInside(const Image& image, const void* address, uint64_t size) {
  for (const SegmentCommand& segment : image.segments) {
    const uint64_t offset = reinterpret_cast<uint64_t>(address) -
                            reinterpret_cast<uint64_t>(image.slide + segment.address);
    if (takesRoom(segment) && offset <= segment.memorySize && size <= segment.memorySize - offset) {
      return true;
    }
  }
  return false;
}

const Section* findSection(const Image& image, const char* name) {
  for (const Section& section : image.sections) {
    if (strncmp(section.name, name, sizeof section.name) == 0) {
      return &section;
    }
  }
  return nullptr;
}

Bytes sectionBytes(const Image& image, const char* name) {
  const Section* section = findSection(image, name);
  if (section == nullptr) {
    return {nullptr, nullptr, name};
  }
  const uint8_t* first = image.slide + section->address;
  return {first, first + section->size, name};
}

}  // namespace macrun
