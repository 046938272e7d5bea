#include <dlfcn.h>

#include <cstdint>

#include "platform/process_end.h"
#include "tests/macos/run/supply/tables.h"

namespace macrun {

// RTLD_… of <dlfcn.h>. Where neither is set, a library's names are for all.
constexpr int kDarwinNow = 0x2, kDarwinLocal = 0x4, kDarwinNoLoad = 0x10, kDarwinNoDelete = 0x80;

static void* openLibrary(const char* path, int mode) {
  // A JVM ends the process with exit(), which would run GNUstep's handlers beside its event loop.
  static const bool once = [] {
    skipExitHandlersSoFar();
    return true;
  }();
  static_cast<void>(once);
  const int linux = ((mode & kDarwinNow) != 0 ? RTLD_NOW : RTLD_LAZY) |
                    ((mode & kDarwinLocal) != 0 ? RTLD_LOCAL : RTLD_GLOBAL) |
                    ((mode & kDarwinNoLoad) != 0 ? RTLD_NOLOAD : 0) |
                    ((mode & kDarwinNoDelete) != 0 ? RTLD_NODELETE : 0);
  return dlopen(path, linux);
}

// The special handles, RTLD_NEXT to RTLD_MAIN_ONLY, are -1 to -5.
static bool isSpecialHandle(void* library) {
  constexpr intptr_t kLowest = -5;
  const auto number = reinterpret_cast<intptr_t>(library);
  return number < 0 && number >= kLowest;
}

// What the executable itself exports is not found: Linux's linker does not know it.
static void* findInLibrary(void* library, const char* name) {
  return dlsym(isSpecialHandle(library) ? RTLD_DEFAULT : library, name);
}

static constexpr Supplied kLibraries[] = {
    function<dlclose>("_dlclose"),
    function<dlerror>("_dlerror"),
    function<openLibrary>("_dlopen"),
    function<findInLibrary>("_dlsym"),
};
const SupplyTable kLibraryTable = tableOf(kLibraries);

}  // namespace macrun
