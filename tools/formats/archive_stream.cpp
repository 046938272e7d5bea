#include "tools/formats/archive_stream.h"

#include <sys/stat.h>

#include <algorithm>
#include <memory>
#include <mutex>

#include "tools/system/input_error.h"
#include "tools/system/interruption.h"

namespace tools {

static const size_t kCopyChunk = 256 * 1024;
static const unsigned kArchiveMode = 0644;
// LibTomCrypt's tables of hashes and generators are the process's.
static std::mutex cryptoTables;

ArchiveStream::ArchiveStream(const std::string& path)
    : file_(path, kArchiveMode), hash_(allocHashState()) {
  const std::lock_guard<std::mutex> lock(cryptoTables);
  if (!initHash(hash_.get())) {
    throw InputError("the archive's hash cannot be set up");
  }
}

void ArchiveStream::append(const void* data, size_t size) {
  stopWhenInterrupted();
  file_.write(data, size);
  if (!updateHash(hash_.get(), static_cast<const unsigned char*>(data), static_cast<int>(size))) {
    throw InputError("the archive's hash cannot be continued");
  }
  size_ += static_cast<long>(size);
}

void ArchiveStream::addFolder(const std::string& path) {
  const std::string record = folderRecord(path);
  append(record.data(), record.size());
}

static long sizeOf(FILE* file) {
  struct stat status {};
  return fstat(fileno(file), &status) == 0 ? static_cast<long>(status.st_size) : 0;
}

void ArchiveStream::addFile(const std::string& path, const std::string& source, EntryKind kind) {
  const Stream input = openInput(source);
  const long length = sizeOf(input.get());
  const std::string head = fileRecordHead(path, length, kind);
  append(head.data(), head.size());
  const auto chunk = std::make_unique<char[]>(kCopyChunk);
  for (long left = length; left > 0;) {
    const size_t wanted = std::min(kCopyChunk, static_cast<size_t>(left));
    const size_t count = fread(chunk.get(), 1, wanted, input.get());
    append(chunk.get(), count);
    left -= static_cast<long>(count);
    if (count < wanted) {
      throw InputError(source + " cannot be read to its end; it may have changed meanwhile");
    }
  }
}

void ArchiveStream::sign(const SigningKey& key) {
  const Block<unsigned char> digest(doFinal(hash_.get()));
  if (digest == nullptr) {
    throw InputError("the archive's hash cannot be finished");
  }
  const std::string record = [&] {
    const std::lock_guard<std::mutex> lock(cryptoTables);
    return signatureRecord(size_, key.signatureHex(digest.get()));
  }();
  file_.write(record.data(), record.size());
}

}  // namespace tools
