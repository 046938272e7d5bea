#include "tools/key_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>

#include "tools/input_error.h"

namespace tools {

// Far more than any key takes; a wrong file is refused before it is read into memory.
static const size_t kLongestKey = 64 * 1024;

static std::string readAll(FILE* stream, const std::string& source) {
  std::string content(kLongestKey + 1, '\0');
  content.resize(fread(content.data(), 1, content.size(), stream));
  if (ferror(stream) != 0) {
    throw InputError(source + " cannot be read: " + strerror(errno));
  }
  if (content.size() > kLongestKey) {
    throw InputError(source + " is longer than any key; expected a private key file");
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

void writePrivateKey(const std::string& path, const std::string& pem) {
  const mode_t ownerOnly = S_IRUSR | S_IWUSR;
  const int handle = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, ownerOnly);
  if (handle < 0) {
    const std::string hint =
        errno == EEXIST ? "; choose another name, a key is never replaced" : "";
    throw InputError("the key file " + path + " cannot be made: " + strerror(errno) + hint);
  }
  const bool written =
      fchmod(handle, ownerOnly) == 0 && writeAll(handle, pem) && fsync(handle) == 0;
  const int error = errno;
  close(handle);
  if (!written) {
    unlink(path.c_str());
    throw InputError("the key file " + path + " cannot be written: " + strerror(error));
  }
}

bool isOpenToOthers(const std::string& path) {
  struct stat facts;
  return stat(path.c_str(), &facts) == 0 && (facts.st_mode & (S_IRWXG | S_IRWXO)) != 0;
}

}  // namespace tools
