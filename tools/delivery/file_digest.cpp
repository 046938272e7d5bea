#include "tools/delivery/file_digest.h"

#include <sys/stat.h>

#include <filesystem>
#include <memory>
#include <set>

#include "platform/sha256.h"
#include "tools/system/folder_tree.h"
#include "tools/system/input_error.h"
#include "tools/system/interruption.h"
#include "tools/system/whole_file.h"

namespace fs = std::filesystem;

namespace tools {

static const size_t kChunk = 256 * 1024;

namespace {

class Digest {
 public:
  Digest() { startSystemSha256(state_); }
  void add(const void* data, size_t size) {
    updateSystemSha256(state_, static_cast<const unsigned char*>(data), size);
  }
  std::string finish() {
    unsigned char digest[SYSTEM_SHA256_DIGEST_SIZE];
    finishSystemSha256(state_, digest);
    std::string text;
    for (const unsigned char byte : digest) {
      text += "0123456789abcdef"[byte >> 4];
      text += "0123456789abcdef"[byte & 15];
    }
    return text;
  }

 private:
  alignas(8) unsigned char state_[SYSTEM_SHA256_STATE_SIZE];
};

}  // namespace

std::string digestOfText(const std::string& text) {
  Digest digest;
  digest.add(text.data(), text.size());
  return digest.finish();
}

std::string digestOfFile(const std::string& path) {
  const Stream input = openInput(path);
  const auto chunk = std::make_unique<char[]>(kChunk);
  Digest digest;
  while (const size_t count = fread(chunk.get(), 1, kChunk, input.get())) {
    stopWhenInterrupted();
    digest.add(chunk.get(), count);
  }
  if (ferror(input.get()) != 0) {
    throw InputError(path + " cannot be read to its end");
  }
  return digest.finish();
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
