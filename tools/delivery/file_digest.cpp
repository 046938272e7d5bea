#include "tools/delivery/file_digest.h"

#include <sys/stat.h>

#include <filesystem>
#include <memory>
#include <set>

#include "tools/system/folder_tree.h"
#include "tools/system/hex_digits.h"
#include "tools/system/input_error.h"
#include "tools/system/interruption.h"
#include "tools/system/sha256_digest.h"
#include "tools/system/whole_file.h"

namespace fs = std::filesystem;

namespace tools {

static const size_t kChunk = 256 * 1024;

std::string digestOfText(const std::string& text) {
  return hexOf(sha256Of(text.data(), text.size()));
}

std::string digestOfFile(const std::string& path) {
  const Stream input = openInput(path);
  const auto chunk = std::make_unique<char[]>(kChunk);
  Sha256 digest;
  while (const size_t count = fread(chunk.get(), 1, kChunk, input.get())) {
    stopWhenInterrupted();
    digest.add(chunk.get(), count);
  }
  if (ferror(input.get()) != 0) {
    throw InputError(path + " cannot be read to its end");
  }
  return hexOf(digest.finish());
}

// One item of a folder in an unambiguous form: kind, mode, content, path.
static std::string descriptionOf(const fs::path& item, const fs::path& folder) {
  struct stat status {};
  if (lstat(item.c_str(), &status) != 0) {
    throw InputError(item.string() + " cannot be read");
  }
  const std::string mode = std::to_string(status.st_mode & 0777u);
  const std::string end = item.lexically_relative(folder).string() + '\0';
  if (S_ISDIR(status.st_mode)) {
    return "folder " + mode + " " + end;
  }
  if (S_ISLNK(status.st_mode)) {
    return "link " + digestOfText(fs::read_symlink(item)) + " " + end;
  }
  if (!S_ISREG(status.st_mode)) {
    throw InputError(item.string() + " is neither a file, a folder nor a link; remove it");
  }
  return "file " + mode + " " + digestOfFile(item) + " " + end;
}

std::string digestOfContent(const std::string& folder) {
  std::string all;
  for (const auto& [path, item] : listFolder(folder)) {
    all += (item.isFolder ? "folder " : "file " + digestOfFile(item.source) + " ") + path + '\0';
  }
  return digestOfText(all);
}

std::string digestOfFolder(const std::string& folder) {
  try {
    std::set<std::string> paths;
    for (const auto& entry : fs::recursive_directory_iterator(folder)) {
      paths.insert(entry.path());
    }
    std::string all;
    for (const std::string& path : paths) {
      all += descriptionOf(path, folder);
    }
    return digestOfText(all);
  } catch (const fs::filesystem_error& error) {
    throw InputError(error.path1().string() + " cannot be read: " + error.code().message());
  }
}

}  // namespace tools
