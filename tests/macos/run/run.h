#ifndef QUORVANE_TESTS_MACOS_RUN_RUN_H
#define QUORVANE_TESTS_MACOS_RUN_RUN_H

#include <string>

#include "tests/macos/run/image/image.h"

namespace macrun {

// The executable that this process runs, as an absolute path; empty before it is known.
const char* executablePath();
void setExecutablePath(const std::string& path);

// The loaded executable. One for each process.
const Image& loadedImage();

// Loads the executable at `path` and binds what it imports; main thread. The toolkit has to know
// about the process already.
void loadExecutable(const char* path);

// Leaves the loaded executable ready to run.
void makeReady();

}  // namespace macrun

#endif
