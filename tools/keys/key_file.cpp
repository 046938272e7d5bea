#include "tools/keys/key_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>

#include "tools/system/folder_tree.h"
#include "tools/system/input_error.h"

namespace tools {

// Far more than any key needs; a wrong file is refused before it is read into memory.
static const size_t kLongestKey = 64 * 1024;

static std::string readAll(FILE* stream, const std::string& source) {
  std::string content(kLongestKey + 1, '\0');
  content.resize(fread(content.data(), 1, content.size(), stream));
  if (ferror(stream) != 0) {
    throw InputError(source + " cannot be read: " + strerror(errno));
  }
  if (content.size() > kLongestKey) {
    throw InputError(source + " is too long for a key; expected a private key file");
  }
  return content;
}

std::string readKeyText(const std::string& path) {
  if (path == "-") {
    return readAll(stdin, "standard input");
  }
  FILE* stream = fopen(path.c_str(), "rbe");
  if (stream == nullptr) {
    throw InputError("the key file " + path + " cannot be opened: " + strerror(errno));
  }
  const std::unique_ptr<FILE, int (*)(FILE*)> closer(stream, fclose);
  return readAll(stream, path);
}

static bool writeAll(int handle, const std::string& text) {
  size_t written = 0;
  while (written < text.size()) {
    const ssize_t count = write(handle, text.data() + written, text.size() - written);
    if (count < 0) {
      return false;
    }
    written += static_cast<size_t>(count);
  }
  return true;
}

static void writeNewFile(const std::string& path, const std::string& text, mode_t mode) {
  const int handle = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
  if (handle < 0) {
    const std::string hint =
        errno == EEXIST ? "; choose another name, an existing key is never replaced" : "";
    throw InputError("the key file " + path + " cannot be created: " + strerror(errno) + hint);
  }
  const bool written = fchmod(handle, mode) == 0 && writeAll(handle, text) && fsync(handle) == 0;
  const int error = errno;
  close(handle);
  if (!written) {
    unlink(path.c_str());
    throw InputError("the key file " + path + " cannot be written: " + strerror(error));
  }
}

void writePrivateKey(const std::string& path, const std::string& pem) {
  writeNewFile(path, pem, S_IRUSR | S_IWUSR);
}

void writePublicKey(const std::string& path, const std::string& hex) {
  writeNewFile(path, hex + "\n", S_IRUSR | S_IWUSR | S_IRGRP | S_IROTH);
}

std::string faultOfKeyPlace(const std::string& path, const std::string& folder) {
  const bool isPacked = path != "-" && !folder.empty() && isInside(path, folder);
  return isPacked
             ? "which is inside " + folder + " and would be published with it; move it elsewhere"
             : "";
}

void warnOfOpenKey(const std::string& path) {
  if (path != "-" && isOpenToOthers(path)) {
    fprintf(stderr, "quorvane-pack: other users can read %s; run 'chmod 600' on it\n",
            path.c_str());
  }
}

bool isOpenToOthers(const std::string& path) {
  struct stat facts;
  return stat(path.c_str(), &facts) == 0 && (facts.st_mode & (S_IRWXG | S_IRWXO)) != 0;
}

}  // namespace tools
