#include "tests/macos/run/image/image.h"
#include "tests/macos/run/stop.h"

namespace macrun {

using Main = int (*)(int, char**, char**, const char**);
using Initializer = void (*)(int, char**, char**, const char**);

void runInitializers(const Image& image, int argc, char** argv, char** environment,
                     const char** apple) {
  for (const Section& section : image.sections) {
    const uint8_t* first = image.slide + section.address;
    Bytes bytes{first, first + section.size, section.name};
    const uint32_t kind = section.flags & kSectionKind;
    while (bytes.at < bytes.end && kind == kInitializers) {
      take<Initializer>(bytes)(argc, argv, environment, apple);
    }
    while (bytes.at < bytes.end && kind == kInitializerOffsets) {
      uint8_t* function = image.header + take<uint32_t>(bytes);
      reinterpret_cast<Initializer>(function)(argc, argv, environment, apple);
    }
  }
}

int runMain(const Image& image, int argc, char** argv, char** environment, const char** apple) {
  return reinterpret_cast<Main>(image.header + image.entryOffset)(argc, argv, environment, apple);
}

}  // namespace macrun
