#include "tools/apple/jar_libraries.h"

#include <optional>
#include <utility>

#include "tools/java/jar_file.h"
#include "tools/system/ascii_case.h"
#include "tools/system/input_error.h"
#include "tools/system/texts.h"
#include "tools/system/whole_file.h"

namespace tools {

static std::optional<JarFile> jarIn(std::string bytes) {
  try {
    return JarFile(std::move(bytes), "the file");
  } catch (const InputError&) {
    return std::nullopt;
  }
}

std::vector<std::string> nativeLibrariesIn(const std::string& path) {
  const std::optional<JarFile> jar = jarIn(readWhole(path));
  std::vector<std::string> libraries;
  for (const std::string& library : jar ? jar->libraries() : std::vector<std::string>()) {
    if (!endsWith(lowerCase(library), ".so")) {
      libraries.push_back(library);
    }
  }
  return libraries;
}

}  // namespace tools
