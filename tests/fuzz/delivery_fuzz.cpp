// Zip and tar archives of others: whatever they hold, unpacking writes nothing outside of the
// folder, no link in it leads outside, and no file of it runs as another user.

#include <sys/stat.h>

#include <filesystem>
#include <string>

#include "tests/fuzz/fuzz_target.h"
#include "tools/delivery/delivery_reader.h"
#include "tools/system/input_error.h"

namespace fs = std::filesystem;

static const size_t kLongest = 8192;

static bool isBelow(const fs::path& path, const fs::path& folder) {
  const auto [end, rest] = std::mismatch(folder.begin(), folder.end(), path.begin(), path.end());
  return end == folder.end();
}

static void checkItem(const fs::path& item, const fs::path& folder) {
  struct stat status {};
  fuzz::require(lstat(item.c_str(), &status) == 0, "what is listed is there");
  fuzz::require((status.st_mode & (S_ISUID | S_ISGID)) == 0, "no set-user bits");
  if (S_ISLNK(status.st_mode)) {
    // A link may lead in circles, but not outside.
    std::error_code circle;
    const fs::path target = fs::weakly_canonical(item, circle);
    fuzz::require(circle || isBelow(target, folder), "a link stays inside");
  }
}

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size > kLongest) {
    return 0;
  }
  const fs::path scene = fs::canonical(fuzz::emptyFolder());
  const fs::path folder = scene / "a/b/folder";
  fs::create_directories(folder);
  fuzz::writeFile(scene / "archive", std::string(data, data + size));
  try {
    tools::unpackDelivery(scene / "archive", folder);
  } catch (const tools::InputError&) {
    // What was unpacked before that counts as well.
  }
  size_t outside = 0;
  for (const auto& entry : fs::recursive_directory_iterator(scene)) {
    outside += isBelow(entry.path(), folder) ? 0 : 1;
    if (isBelow(entry.path(), folder)) {
      checkItem(entry.path(), folder);
    }
  }
  fuzz::require(outside == 3, "nothing beside the folder but what was there");
  return 0;
}
