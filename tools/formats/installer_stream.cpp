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
    : path_(path), stream_(openInput(path)) {
  fseeko(stream_.get(), 0, SEEK_END);
  size_ = ftello(stream_.get());
  fseeko(stream_.get(), offset, SEEK_SET);
}

long long InstallerStream::bytesLeft() {
  return size_ - ftello(stream_.get());
}

std::string InstallerStream::readField(const char* what) {
  std::string text;
  int byte = getc(stream_.get());
  for (; byte > 0 && text.size() + 2 <= DEFAULT_FIELD_LIMIT; byte = getc(stream_.get())) {
    text.push_back(static_cast<char>(byte));
  }
  if (byte != 0) {
    throw InputError(path_ + (byte == EOF ? " ends inside " : " has too long a text for ") + what +
                     ", before byte " + std::to_string(ftello(stream_.get())));
  }
  return text;
}

long long InstallerStream::readLength(const std::string& name) {
  constexpr size_t kMostDigits = 18;
  const std::string text = readField("a record's length");
  if (text.empty() || text.size() > kMostDigits ||
      text.find_first_not_of("0123456789") != std::string::npos) {
    throw InputError(path_ + ": the length of " + name + " is '" + text +
                     "'; expected a decimal number");
  }
  const long long length = std::stoll(text);
  if (length > bytesLeft()) {
    throw InputError(path_ + " ends inside " + name + ": it should have " + text +
                     " bytes, but only " + std::to_string(bytesLeft()) + " are left");
  }
  return length;
}

std::string InstallerStream::next(const std::string& out) {
  const std::string type = readField("a record's type");
  if (type.empty()) {
    return "";
  }
  if (type != "0") {
    throw InputError(path_ + ": a record's type is '" + type + "'; expected 0, a regular file");
  }
  const std::string name = readField("a record's name");
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
