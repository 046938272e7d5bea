#include "tools/pack/replaceable.h"

#include <filesystem>

#include "tools/system/input_error.h"

namespace tools {

void requireReplaceable(const std::string& path, const char* kind,
                        const std::function<void()>& read) {
  if (!std::filesystem::exists(path)) {
    return;
  }
  try {
    read();
  } catch (const InputError& error) {
    throw InputError(path + " already exists and is not a " + kind + " (" + error.what() +
                     "); name another file, or replace it with --force");
  }
}

}  // namespace tools
