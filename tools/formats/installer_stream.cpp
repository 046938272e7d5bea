#include "tools/formats/installer_stream.h"

#include <algorithm>
#include <memory>

#include "archive/entry_path.h"
#include "support/encoding/field_reader.h"
#include "tools/system/input_error.h"
#include "tools/system/whole_file.h"

namespace tools {

static const size_t kStreamChunk = 65536;

InstallerStream::InstallerStream(const std::string& path, long long offset)
    : path_(path), stream_(openInput(path)), fields_(stream_.get(), path, "") {
  fseeko(stream_.get(), 0, SEEK_END);
  size_ = ftello(stream_.get());
  fseeko(stream_.get(), offset, SEEK_SET);
}

long long InstallerStream::bytesLeft() {
  return size_ - ftello(stream_.get());
}

long long InstallerStream::readLength(const std::string& name) {
  const long long length = fields_.number("the length of " + name);
  if (length > bytesLeft()) {
    throw InputError(path_ + " ends inside " + name + ": it should have " + std::to_string(length) +
                     " bytes, but only " + std::to_string(bytesLeft()) + " are left");
  }
  return length;
}

std::string InstallerStream::next(const std::string& out) {
  const std::string type = fields_.text("a record's type", DEFAULT_FIELD_LIMIT);
  if (type.empty()) {
    return "";
  }
  if (type != "0") {
    throw InputError(path_ + ": a record's type is '" + type + "'; expected 0, a regular file");
  }
  const std::string name = fields_.text("a record's name", DEFAULT_FIELD_LIMIT);
  if (const char* fault = entryPathError(name.c_str())) {
    throw InputError(path_ + ": the record '" + name + "' would not be extracted: " + fault);
  }
  const auto bytes = std::make_unique<char[]>(kStreamChunk);
  WholeFile file(out, 0600);
  size_t count = 1;
  for (long long left = readLength(name); left > 0 && count > 0;
       left -= static_cast<long long>(count)) {
    const size_t wanted = std::min(kStreamChunk, static_cast<size_t>(left));
    count = fread(bytes.get(), 1, wanted, stream_.get());
    file.write(bytes.get(), count);
  }
  if (ferror(stream_.get()) != 0) {
    throw InputError(path_ + " cannot be read to the end of " + name);
  }
  file.finish();
  return name;
}

}  // namespace tools
