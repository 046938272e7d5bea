#include "tools/java/jar_file.h"

#include <string_view>
#include <utility>

#include "tools/java/inflate.h"
#include "tools/system/ascii_case.h"
#include "tools/system/input_error.h"
#include "tools/system/texts.h"
#include "tools/system/whole_file.h"

namespace tools {

// The records of a zip file: their marks and sizes.
static const char kFileMark[] = "PK\x03\x04";
static const size_t kFileHead = 30;
static const char kEntryMark[] = "PK\x01\x02";
static const size_t kEntryHead = 46;
static const char kEndMark[] = "PK\x05\x06";
static const size_t kEndHead = 22;
static const char kLargeEndMark[] = "PK\x06\x06";
static const size_t kLargeEndHead = 56;
static const char kLargePlaceMark[] = "PK\x06\x07";
static const size_t kLargePlaceHead = 20;

static uint64_t numberAt(std::string_view bytes, size_t at, size_t size) {
  uint64_t number = 0;
  for (size_t i = size; i-- > 0;) {
    number = (number << 8) | static_cast<unsigned char>(bytes[at + i]);
  }
  return number;
}

// Returns the `size` bytes at `at` that begin with `mark`. Throws InputError if they are not there.
static std::string_view recordAt(std::string_view bytes, uint64_t at, size_t size,
                                 const char* mark) {
  if (at > bytes.size() || size > bytes.size() - at || bytes.substr(at, 4) != mark) {
    throw InputError("a record of its directory is missing");
  }
  return bytes.substr(at, size);
}

// Returns where the record at the end of a zip file begins: a comment of any bytes follows it.
static uint64_t findEnd(std::string_view bytes) {
  constexpr size_t kLongestComment = 65535;
  const size_t last = bytes.size() < kEndHead ? 0 : bytes.size() - kEndHead;
  const size_t first = last < kLongestComment ? 0 : last - kLongestComment;
  for (size_t at = bytes.rfind(kEndMark, last); at != std::string_view::npos && at >= first;
       at = at == 0 ? std::string_view::npos : bytes.rfind(kEndMark, at - 1)) {
    if (bytes.size() - at >= kEndHead &&
        at + kEndHead + numberAt(bytes, at + 20, 2) <= bytes.size()) {
      return at;
    }
  }
  throw InputError("its directory is missing");
}

// A directory: where it is said to begin, how long it is, and where it ends.
namespace {
struct Directory {
  uint64_t offset;
  uint64_t size;
  uint64_t end;
};
}  // namespace

static Directory findDirectory(std::string_view bytes) {
  constexpr uint64_t kInLargeEnd = 0xffffffff;
  constexpr uint64_t kManyEntries = 0xffff;
  const uint64_t end = findEnd(bytes);
  const Directory found{numberAt(bytes, end + 16, 4), numberAt(bytes, end + 12, 4), end};
  const bool isLarge = found.offset == kInLargeEnd || found.size == kInLargeEnd ||
                       numberAt(bytes, end + 10, 2) == kManyEntries;
  if (!isLarge || end < kLargePlaceHead ||
      bytes.substr(end - kLargePlaceHead, 4) != kLargePlaceMark) {
    return found;
  }
  // The record's own place is relative to the zip file's start; in a jar it precedes its locator.
  const uint64_t at = end - kLargePlaceHead;
  const uint64_t largeEnd = at < kLargeEndHead ? 0 : at - kLargeEndHead;
  const std::string_view large = recordAt(bytes, largeEnd, kLargeEndHead, kLargeEndMark);
  return {numberAt(large, 48, 8), numberAt(large, 40, 8), largeEnd};
}

JarFile::JarFile(std::string bytes, std::string name)
    : bytes_(std::move(bytes)), name_(std::move(name)) {
  try {
    readDirectory();
  } catch (const InputError&) {
    throw InputError(name_ + " is not a jar, or is damaged; build it or copy it again");
  }
}

void JarFile::readDirectory() {
  const std::string_view bytes = bytes_;
  const Directory directory = findDirectory(bytes);
  if (directory.size > directory.end || directory.offset > directory.end - directory.size) {
    throw InputError("its directory is not where it should be");
  }
  before_ = directory.end - directory.size - directory.offset;
  uint64_t at = directory.end - directory.size;
  while (at < directory.end) {
    const std::string_view head = recordAt(bytes, at, kEntryHead, kEntryMark);
    const uint64_t nameSize = numberAt(head, 28, 2);
    const uint64_t size = kEntryHead + nameSize + numberAt(head, 30, 2) + numberAt(head, 32, 2);
    if (size > directory.end - at) {
      throw InputError("its directory ends too early");
    }
    entries_[std::string(bytes.substr(at + kEntryHead, nameSize))] = {
        numberAt(head, 42, 4), numberAt(head, 20, 4), static_cast<unsigned>(numberAt(head, 10, 2))};
    at += size;
  }
}

std::vector<std::string> JarFile::libraries() const {
  std::vector<std::string> libraries;
  for (const auto& [path, entry] : entries_) {
    const std::string lower = lowerCase(path);
    if (endsWith(lower, ".so") || endsWith(lower, ".dylib") || endsWith(lower, ".jnilib")) {
      libraries.push_back(path);
    }
  }
  return libraries;
}

std::string JarFile::unpack(const Entry& entry) const {
  constexpr size_t kMost = 16 << 20;
  constexpr unsigned kStored = 0;
  constexpr unsigned kDeflated = 8;
  const std::string_view bytes = bytes_;
  const uint64_t start = before_ + entry.offset;
  const std::string_view head = recordAt(bytes, start, kFileHead, kFileMark);
  const uint64_t at = start + kFileHead + numberAt(head, 26, 2) + numberAt(head, 28, 2);
  if (at > bytes.size() || entry.packedSize > bytes.size() - at) {
    throw InputError("it ends too early");
  }
  const std::string_view packed = bytes.substr(at, entry.packedSize);
  if (entry.method == kDeflated) {
    return inflate(packed, kMost);
  }
  if (entry.method != kStored || packed.size() > kMost) {
    throw InputError("it is compressed in another way, or too large");
  }
  return std::string(packed);
}

JarFile readJar(const std::string& path) {
  return JarFile(readWhole(path), path);
}

std::string JarFile::read(const std::string& path) const {
  try {
    return unpack(entries_.at(path));
  } catch (const InputError& error) {
    throw InputError(path + " in " + name_ + " is damaged: " + error.what());
  }
}

}  // namespace tools
