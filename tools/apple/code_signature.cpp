#include "tools/apple/code_signature.h"

#include <algorithm>
#include <cstdint>

#include "tools/system/sha256_digest.h"
#include "tools/system/whole_file.h"

namespace tools {

namespace {

// A part of a file's bytes. Reading outside of it gives 0 and is remembered.
class Bytes {
 public:
  Bytes(const char* start, size_t size) : start_(start), size_(size) {}

  size_t size() const { return size_; }
  bool isWhole() const { return isWhole_; }
  const char* at(size_t offset) const { return start_ + offset; }
  bool has(uint64_t offset, uint64_t count) const {
    return offset <= size_ && count <= size_ - offset;
  }

  uint32_t big(uint64_t offset) { return number(offset, true); }
  uint32_t little(uint64_t offset) { return number(offset, false); }
  uint8_t byte(uint64_t offset) {
    isWhole_ = isWhole_ && has(offset, 1);
    return has(offset, 1) ? static_cast<uint8_t>(start_[offset]) : 0;
  }
  uint64_t bigLong(uint64_t offset) {
    return static_cast<uint64_t>(big(offset)) << 32 | big(offset + 4);
  }

  // The part, or nothing of it if it does not lie inside.
  Bytes part(uint64_t offset, uint64_t count) {
    isWhole_ = isWhole_ && has(offset, count);
    return has(offset, count) ? Bytes(start_ + offset, count) : Bytes(start_, 0);
  }

  std::string text() const { return std::string(start_, size_); }

  // The text that a zero byte ends.
  std::string textAt(uint64_t offset) {
    const char* const end = start_ + size_;
    const char* const from = has(offset, 0) ? start_ + offset : end;
    return std::string(from, std::find(from, end, '\0'));
  }

 private:
  uint32_t number(uint64_t offset, bool isBig) {
    uint32_t value = 0;
    for (unsigned i = 0; i < 4; ++i) {
      value |= static_cast<uint32_t>(byte(offset + i)) << (isBig ? 24 - 8 * i : 8 * i);
    }
    return value;
  }

  const char* start_;
  size_t size_;
  bool isWhole_ = true;
};

constexpr uint32_t kFat = 0xCAFEBABE;
constexpr uint32_t kFat64 = 0xCAFEBABF;
// A Java class begins as a fat file does, with its version, 45 or more, in place of the count.
constexpr uint32_t kMostProcessors = 30;
constexpr uint32_t kMach64 = 0xFEEDFACF;
constexpr uint32_t kMach32 = 0xFEEDFACE;
constexpr uint32_t kProgram = 2;
constexpr uint32_t kArm64 = 0x0100000C;
constexpr uint32_t kSignatureCommand = 0x1D;

constexpr uint32_t kSuperBlob = 0xFADE0CC0;
constexpr uint32_t kDirectory = 0xFADE0C02;
constexpr uint32_t kEntitlements = 0xFADE7171;
constexpr uint32_t kCertificates = 0xFADE0B01;
constexpr uint32_t kInfoSlot = 1;
constexpr uint32_t kSealSlot = 3;
constexpr uint32_t kLastSlot = 11;
constexpr uint32_t kBlobHead = 8;
// A signature has a dozen records at most; a made-up one could have each cover the whole file.
constexpr uint32_t kMostBlobs = 32;

constexpr uint32_t kHardened = 0x10000;
constexpr uint8_t kSha256 = 2;
constexpr uint8_t kShortSha256 = 3;
constexpr size_t kSha256Size = 32;
constexpr size_t kShortSha256Size = 20;

// A record of a signature.
struct Blob {
  uint32_t slot;
  uint32_t magic;
  Bytes bytes;
};

// Reads one code directory, the list of hashes that is what a certificate signs.
class Directory {
 public:
  Directory(const Bytes& blob, CodeSignature* signature) : blob_(blob), signature_(signature) {}

  bool isReadable() {
    const uint8_t type = blob_.byte(37);
    hashSize_ = blob_.byte(36);
    return (type == kSha256 && hashSize_ == kSha256Size) ||
           (type == kShortSha256 && hashSize_ == kShortSha256Size);
  }

  void read(const Bytes& code, const std::vector<Blob>& blobs) {
    const uint32_t version = blob_.big(8);
    signature_->hashLists.push_back(sha256Of(blob_.at(0), blob_.size()));
    signature_->isHardened = (blob_.big(12) & kHardened) != 0;
    signature_->identifier = blob_.textAt(blob_.big(20));
    const uint32_t team = version >= 0x20200 ? blob_.big(48) : 0;
    signature_->team = team == 0 ? "" : blob_.textAt(team);
    hashes_ = blob_.big(16);
    specials_ = blob_.big(24);
    signature_->infoDigest = special(kInfoSlot);
    signature_->sealDigest = special(kSealSlot);
    checkRecords(blobs);
    checkPages(code, version);
    if (!blob_.isWhole()) {
      fault("has a signature that is cut short");
    }
  }

 private:
  void fault(const std::string& what) { signature_->faults.push_back(what); }

  std::string digest(const char* bytes, size_t size) const {
    return sha256Of(bytes, size).substr(0, hashSize_);
  }

  // The digest of what is bound to the code under that number; empty if there is none.
  std::string special(uint32_t slot) {
    const uint64_t before = static_cast<uint64_t>(slot) * hashSize_;
    if (slot > specials_ || before > hashes_) {
      return "";
    }
    const std::string found = blob_.part(hashes_ - before, hashSize_).text();
    return found == std::string(hashSize_, '\0') ? "" : found;
  }

  void checkRecords(const std::vector<Blob>& blobs) {
    for (const Blob& blob : blobs) {
      if (blob.slot != 0 && blob.slot <= kLastSlot &&
          special(blob.slot) != digest(blob.bytes.at(0), blob.bytes.size())) {
        fault("has a signature that does not cover its record " + std::to_string(blob.slot));
      }
    }
  }

  void checkPages(const Bytes& code, uint32_t version) {
    const uint32_t pages = blob_.big(28);
    const uint32_t shortLimit = blob_.big(32);
    const uint64_t limit =
        shortLimit == 0 && version >= 0x20300 ? blob_.bigLong(56) : uint64_t{shortLimit};
    const uint8_t shift = blob_.byte(39);
    if (limit != code.size()) {
      fault("is signed up to byte " + std::to_string(limit) + ", and its signature begins at " +
            std::to_string(code.size()));
      return;
    }
    const uint64_t page = shift == 0 || shift > 31 ? std::max<uint64_t>(limit, 1) : 1ULL << shift;
    if (pages != (limit + page - 1) / page ||
        !blob_.has(hashes_, static_cast<uint64_t>(pages) * hashSize_)) {
      fault("has a signature with the hashes of " + std::to_string(pages) + " pages");
      return;
    }
    uint64_t wrong = 0;
    for (uint64_t i = 0; i < pages; ++i) {
      const size_t size = static_cast<size_t>(std::min(page, limit - i * page));
      const std::string wanted(blob_.at(hashes_ + i * hashSize_), hashSize_);
      wrong += digest(code.at(static_cast<size_t>(i * page)), size) == wanted ? 0 : 1;
    }
    if (wrong > 0) {
      fault("was changed after it was signed: " + std::to_string(wrong) + " of its " +
            std::to_string(pages) + " pages are not as signed");
    }
  }

  Bytes blob_;
  CodeSignature* signature_;
  size_t hashSize_ = 0;
  uint64_t hashes_ = 0;
  uint32_t specials_ = 0;
};

std::vector<Blob> blobsOf(Bytes signature, CodeSignature* result) {
  std::vector<Blob> blobs;
  const uint32_t count = signature.big(0) == kSuperBlob ? signature.big(8) : 0;
  for (uint64_t i = 0; i < count && i < kMostBlobs && signature.isWhole(); ++i) {
    const uint32_t slot = signature.big(12 + 8 * i);
    const uint32_t offset = signature.big(16 + 8 * i);
    const uint32_t magic = signature.big(offset);
    const uint32_t length = signature.big(uint64_t{offset} + 4);
    blobs.push_back({slot, magic, signature.part(offset, length)});
  }
  if (count == 0 || count > kMostBlobs || !signature.isWhole()) {
    result->faults.emplace_back("has a signature that cannot be read");
    blobs.clear();
  }
  return blobs;
}

void readSignature(const Bytes& code, const Bytes& bytes, CodeSignature* result) {
  const std::vector<Blob> blobs = blobsOf(bytes, result);
  bool isChecked = blobs.empty();
  for (const Blob& blob : blobs) {
    if (blob.magic == kCertificates) {
      result->hasCertificate = blob.bytes.size() > kBlobHead;
    } else if (blob.magic == kEntitlements && blob.bytes.size() >= kBlobHead) {
      result->entitlements = blob.bytes.text().substr(kBlobHead);
    } else if (blob.magic == kDirectory) {
      // Systems of different age read different directories; those before SHA-256 are passed over.
      Directory directory(blob.bytes, result);
      if (directory.isReadable()) {
        directory.read(code, blobs);
        isChecked = true;
      }
    }
  }
  if (!isChecked) {
    result->faults.emplace_back("has a signature without SHA-256 hashes");
  }
}

// Reads the code for one processor.
CodeSignature readPart(Bytes code, bool* isProgram) {
  CodeSignature result;
  const uint32_t commands = code.little(16);
  *isProgram = code.little(12) == kProgram;
  result.needsOne = code.little(4) == kArm64;
  uint64_t at = code.little(0) == kMach64 ? 32 : 28;
  for (uint32_t i = 0; i < commands && code.isWhole(); ++i) {
    if (code.little(at) == kSignatureCommand) {
      const uint32_t offset = code.little(at + 8);
      const uint32_t size = code.little(at + 12);
      const Bytes signature = code.part(offset, size);
      result.isSigned = true;
      if (code.isWhole() && offset < at) {
        result.faults.emplace_back("has a signature that covers nothing");
        return result;
      }
      if (code.isWhole()) {
        if (uint64_t{offset} + size != code.size()) {
          result.faults.emplace_back("continues after its signature, which does not cover that");
        }
        readSignature(Bytes(code.at(0), offset), signature, &result);
        return result;
      }
    }
    const uint32_t length = code.little(at + 4);
    at += std::max<uint32_t>(length, kBlobHead);
  }
  if (!code.isWhole()) {
    result.faults.emplace_back("is cut short");
  }
  return result;
}

bool isThin(Bytes bytes) {
  return bytes.little(0) == kMach64 || bytes.little(0) == kMach32;
}

bool isFat(Bytes bytes) {
  return (bytes.big(0) == kFat || bytes.big(0) == kFat64) && bytes.has(0, 8) && bytes.big(4) > 0 &&
         bytes.big(4) <= kMostProcessors;
}

}  // namespace

bool MachFile::isSigned() const {
  return std::all_of(parts.begin(), parts.end(),
                     [](const CodeSignature& part) { return part.isSigned; });
}

std::optional<MachFile> readMachFile(const std::string& bytes) {
  Bytes file(bytes.data(), bytes.size());
  MachFile result;
  if (isThin(file)) {
    result.parts.push_back(readPart(file, &result.isProgram));
    return result;
  }
  if (!isFat(file)) {
    return std::nullopt;
  }
  const bool isLong = file.big(0) == kFat64;
  const uint32_t count = file.big(4);
  for (uint64_t i = 0; i < count; ++i) {
    const uint64_t entry = 8 + i * (isLong ? 32 : 20);
    const uint64_t offset = isLong ? file.bigLong(entry + 8) : file.big(entry + 8);
    const uint64_t size = isLong ? file.bigLong(entry + 16) : file.big(entry + 12);
    bool isProgram = false;
    result.parts.push_back(readPart(file.part(offset, size), &isProgram));
    result.isProgram = result.isProgram || isProgram;
  }
  return result;
}

std::vector<std::string> faultsOf(const MachFile& file) {
  std::vector<std::string> faults;
  for (const CodeSignature& part : file.parts) {
    if (part.needsOne && !part.isSigned) {
      faults.emplace_back("is not signed, and no Mac with Apple's processor runs it so");
    }
    faults.insert(faults.end(), part.faults.begin(), part.faults.end());
  }
  return faults;
}

bool beginsMachFile(const std::string& head) {
  const Bytes bytes(head.data(), head.size());
  return isThin(bytes) || isFat(bytes);
}

bool isMachFile(const std::string& path) {
  const Stream stream = openInput(path);
  char head[MACH_HEAD_SIZE] = {};
  return beginsMachFile({head, fread(head, 1, sizeof head, stream.get())});
}

}  // namespace tools
