#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "tests/macos/run/image/image.h"
#include "tests/macos/run/stop.h"

namespace macrun {

static Bytes mapFile(const char* path, int handle) {
  struct stat status;
  if (fstat(handle, &status) != 0 || !S_ISREG(status.st_mode) || status.st_size == 0) {
    refuse("%s: not a Mach-O file", path);
  }
  const auto size = static_cast<size_t>(status.st_size);
  void* bytes = mmap(nullptr, size, PROT_READ, MAP_PRIVATE, handle, 0);
  if (bytes == MAP_FAILED) {
    refuse("%s: cannot be mapped: %s", path, strerror(errno));
  }
  const auto* first = static_cast<const uint8_t*>(bytes);
  return {first, first + size, path};
}

// Leaves in `file` the part of a fat file that is for this processor.
static void chooseSlice(ExecutableFile& file) {
  Bytes rest = file.bytes;
  const uint32_t count = __builtin_bswap32(take<FatHeader>(rest).count);
  for (uint32_t i = 0; i < count; ++i) {
    const auto slice = take<FatSlice>(rest);
    if (__builtin_bswap32(slice.processor) == kProcessorX86_64) {
      file.offset = __builtin_bswap32(slice.offset);
      file.bytes = part(file.bytes, file.offset, __builtin_bswap32(slice.size));
      return;
    }
  }
  refuse("%s: has no part for x86-64", file.path.c_str());
}

static void checkHeader(const ExecutableFile& file) {
  const auto header = read<FileHeader>(file.bytes, 0);
  const char* path = file.path.c_str();
  if (header.magic != kMagic64) {
    refuse("%s: not a Mach-O file", path);
  }
  if (header.processor != kProcessorX86_64) {
    refuse("%s: for another processor than x86-64", path);
  }
  if (header.fileType != kExecute) {
    refuse("%s: a Mach-O file, but not an executable", path);
  }
}

ExecutableFile openExecutable(const char* path) {
  const int handle = open(path, O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  if (handle < 0) {
    refuse("%s: %s", path, strerror(errno));
  }
  ExecutableFile file{path, handle, 0, mapFile(path, handle)};
  file.bytes.what = file.path.c_str();
  const auto magic = read<uint32_t>(file.bytes, 0);
  if (magic == kFatMagic64) {
    refuse("%s: a fat file with 64-bit offsets", path);
  }
  if (magic == kFatMagic) {
    chooseSlice(file);
  }
  checkHeader(file);
  return file;
}

void closeExecutable(ExecutableFile& file) {
  void* first = const_cast<uint8_t*>(file.bytes.at - file.offset);
  munmap(first, static_cast<size_t>(file.bytes.end - file.bytes.at) + file.offset);
  close(file.handle);
  file = {};
}

}  // namespace macrun
