#include "tools/system/whole_file.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "tools/system/input_error.h"

namespace tools {

static std::string reason() {
  return strerror(errno);
}

Stream openInput(const std::string& path) {
  Stream stream(fopen(path.c_str(), "rb"));
  if (stream == nullptr) {
    throw InputError(path + " cannot be read: " + reason());
  }
  struct stat status {};
  if (fstat(fileno(stream.get()), &status) != 0 || !S_ISREG(status.st_mode)) {
    throw InputError(path + " is not a regular file");
  }
  return stream;
}

unsigned permissionsOf(FILE* file) {
  struct stat status {};
  return fstat(fileno(file), &status) == 0 ? status.st_mode & 0777u : 0644u;
}

std::string readWhole(const std::string& path) {
  const Stream stream = openInput(path);
  std::string bytes;
  char piece[65536];
  while (const size_t count = fread(piece, 1, sizeof piece, stream.get())) {
    bytes.append(piece, count);
  }
  if (ferror(stream.get()) != 0) {
    throw InputError(path + " cannot be read to its end: " + reason());
  }
  return bytes;
}

void writeWhole(const std::string& path, const std::string& bytes, unsigned mode) {
  WholeFile file(path, mode);
  file.write(bytes.data(), bytes.size());
  file.finish();
}

WholeFile::WholeFile(const std::string& path, unsigned mode)
    : path_(path), temporary_(path + ".part-XXXXXX") {
  const int file = mkstemp(temporary_.data());
  if (file < 0) {
    temporary_.clear();
    fail("cannot be written");
  }
  fchmod(file, static_cast<mode_t>(mode));
  stream_.reset(fdopen(file, "w+b"));
  if (stream_ == nullptr) {
    close(file);
    fail("cannot be written");
  }
}

WholeFile::~WholeFile() {
  if (!temporary_.empty()) {
    unlink(temporary_.c_str());
  }
}

void WholeFile::fail(const std::string& what) const {
  const bool isFull = errno == ENOSPC || errno == EDQUOT;
  const std::string message = path_ + " " + what + ": " + reason();
  if (isFull) {
    throw DiskFullError(message);
  }
  throw InputError(message);
}

void WholeFile::write(const void* data, size_t size) {
  if (fwrite(data, 1, size, stream_.get()) != size) {
    fail("cannot be written");
  }
}

void WholeFile::finish() {
  if (fclose(stream_.release()) != 0) {
    fail("cannot be written");
  }
  if (rename(temporary_.c_str(), path_.c_str()) != 0) {
    fail("cannot be moved into place");
  }
  temporary_.clear();
}

}  // namespace tools
