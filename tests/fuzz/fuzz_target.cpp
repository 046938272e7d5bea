#include "tests/fuzz/fuzz_target.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <system_error>

namespace fuzz {
namespace {

struct ProcessEnded {
  int status;
};

int lowestFreeHandle() {
  const int handle = open("/dev/null", O_RDONLY | O_CLOEXEC);
  close(handle);
  return handle;
}

// Handles are given out lowest first, so what the body left open lies from `first` up.
void closeHandlesFrom(int first) {
  for (int missed = 0; missed < 16; ++first) {
    missed = close(first) == 0 ? 0 : missed + 1;
  }
}

class Folder {
 public:
  Folder() : path_((std::filesystem::temp_directory_path() / "quorvane-fuzz-XXXXXX").string()) {
    require(mkdtemp(path_.data()) != nullptr, "no temporary folder");
  }
  ~Folder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }

  const std::string& emptied() {
    std::error_code ignored;
    for (const auto& entry : std::filesystem::directory_iterator(path_)) {
      std::filesystem::remove_all(entry.path(), ignored);
    }
    return path_;
  }

 private:
  std::string path_;
};

}  // namespace

void require(bool held, const char* text) {
  if (!held) {
    fprintf(stderr, "fuzz target: %s\n", text);
    abort();
  }
}

bool endsProcess(const std::function<void()>& body, int* status) {
  const int handle = lowestFreeHandle();
  try {
    body();
  } catch (const ProcessEnded& end) {
    closeHandlesFrom(handle);
    if (status != nullptr) {
      *status = end.status;
    }
    return true;
  }
  return false;
}

std::string emptyFolder() {
  static Folder folder;
  return folder.emptied();
}

void writeFile(const std::string& path, const std::string& bytes) {
  std::ofstream file(path, std::ios::binary);
  if (!file) {
    std::filesystem::create_directories(std::filesystem::path(path).parent_path());
    file.open(path, std::ios::binary);
  }
  require(static_cast<bool>(file << bytes), "no file can be written");
}

}  // namespace fuzz

// The linker puts this in the place of endProcess(int), whose calls it wraps.
extern "C" [[noreturn]] void __wrap__Z10endProcessi(int status) {
  throw fuzz::ProcessEnded{status};
}
