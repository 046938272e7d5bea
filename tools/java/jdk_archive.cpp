#include "tools/java/jdk_archive.h"

#include <filesystem>

#include "tools/delivery/delivery_reader.h"
#include "tools/delivery/file_digest.h"
#include "tools/system/input_error.h"

namespace fs = std::filesystem;

namespace tools {

void requireDigest(const std::string& archive, const std::string& sha256) {
  const std::string found = digestOfFile(archive);
  if (found != sha256) {
    throw InputError(archive + " has the SHA-256 " + found + ", and jdk_sha256 is " + sha256 +
                     "; get the file again, or correct jdk_sha256");
  }
}

void unpackModules(const std::string& archive, const std::string& folder) {
  unpackDelivery(archive, folder, [](const std::string& path) {
    const fs::path file = path;
    return file.extension() == ".jmod" && file.parent_path().filename() == "jmods";
  });
}

std::string modulesIn(const std::string& folder, const std::string& archive) {
  for (const auto& entry : fs::recursive_directory_iterator(folder)) {
    if (entry.path().filename() == "java.base.jmod") {
      return entry.path().parent_path();
    }
  }
  throw InputError(archive +
                   " has no folder jmods with java.base.jmod; name the archive of a JDK "
                   "that has its modules as jmod files");
}

}  // namespace tools
