#include "tools/formats/archive_reader.h"

#include <algorithm>
#include <cstdio>
#include <memory>

#include "archive/entry.h"
#include "archive/entry_path.h"
#include "crypto/hash_file.h"
#include "crypto/mixed_hash.h"
#include "support/encoding/field_reader.h"
#include "support/encoding/hex.h"
#include "support/owned.h"
#include "tools/system/input_error.h"
#include "tools/system/quiet_output.h"
#include "tools/system/whole_file.h"

namespace tools {

static const size_t kLongestField = 4094;

// Reads records; errors give the archive's path and the offset.
class RecordReader {
 public:
  RecordReader(const std::string& path, const std::string& name)
      : name_(name), stream_(openInput(path)) {}

  ArchiveListing read() {
    ArchiveListing listing;
    while (!listing.isSigned && !isAtEnd()) {
      const long offset = position();
      ArchiveEntry entry = readHead();
      if (entry.kind != EntryKind::folder && entry.path == SIGNATURE_RECORD_PATH) {
        readSignature(offset, &listing);
      } else {
        skipData(entry);
        listing.entries.push_back(std::move(entry));
      }
    }
    if (!isAtEnd()) {
      fail(position(), "bytes follow the signature record");
    }
    return listing;
  }

 private:
  [[noreturn]] void fail(long offset, const std::string& what) const {
    throw InputError(name_ + " is damaged at byte " + std::to_string(offset) + ": " + what +
                     "; make it again");
  }

  long position() const { return static_cast<long>(ftello(stream_.get())); }

  bool isAtEnd() {
    const int next = getc(stream_.get());
    return next == EOF || ungetc(next, stream_.get()) == EOF;
  }

  std::string readField(const char* name) {
    const long offset = position();
    std::string text;
    int byte = getc(stream_.get());
    for (; byte > 0; byte = getc(stream_.get())) {
      text.push_back(static_cast<char>(byte));
      if (text.size() > kLongestField) {
        fail(offset, std::string(name) + " is too long for a field");
      }
    }
    if (byte == EOF) {
      fail(offset, std::string("it ends inside ") + name);
    }
    return text;
  }

  long readNumber(const char* name) {
    const long offset = position();
    const std::string text = readField(name);
    if (text.empty() || text.size() > 18 ||
        text.find_first_not_of("0123456789") != std::string::npos) {
      fail(offset, std::string(name) + " is '" + text + "', expected a decimal number");
    }
    return std::stol(text);
  }

  ArchiveEntry readHead() {
    const long offset = position();
    const std::string type = readField("an entry's type");
    ArchiveEntry entry;
    if (type == "1") {
      entry.kind = EntryKind::folder;
    } else if (type == "2") {
      entry.kind = EntryKind::pack200;
    } else if (type != "0") {
      fail(offset, "an entry's type is '" + type + "', expected 0, 1 or 2");
    }
    entry.path = readField("an entry's path");
    if (const char* fault = entryPathError(entry.path.c_str())) {
      fail(offset, "the entry '" + entry.path + "' is refused, " + fault);
    }
    if (entry.kind != EntryKind::folder) {
      entry.length = readNumber("an entry's length");
    }
    entry.offset = position();
    return entry;
  }

  void skipData(const ArchiveEntry& entry) {
    const long offset = entry.offset;
    if (entry.length == 0) {
      return;
    }
    const bool reached = fseeko(stream_.get(), entry.length - 1, SEEK_CUR) == 0;
    if (!reached || getc(stream_.get()) == EOF) {
      fail(offset, "it ends inside the data of '" + entry.path + "'");
    }
  }

  void readSignature(long offset, ArchiveListing* listing) {
    listing->isSigned = true;
    listing->recordOffset = offset;
    listing->signedLength = readNumber("the signed length");
    listing->signatureHex = readField("the signature");
    const long end = position();
    const std::string wanted = signatureRecord(listing->signedLength, listing->signatureHex);
    std::string found(static_cast<size_t>(end - offset), '\0');
    fseeko(stream_.get(), offset, SEEK_SET);
    listing->isWrittenForm =
        fread(found.data(), 1, found.size(), stream_.get()) == found.size() && found == wanted &&
        listing->signatureHex.find_first_not_of("0123456789abcdef") == std::string::npos;
  }

  std::string name_;
  Stream stream_;
};

ArchiveListing readArchive(const std::string& path, const std::string& name) {
  return RecordReader(path, name).read();
}

// Returns the digest of the first `length` bytes, or null on failure.
static Block<unsigned char> hashStart(const std::string& path, long length) {
  const Stream stream = openInput(path);
  const Block<Hash_state> state(allocHashState());
  if (!initHash(state.get())) {
    return nullptr;
  }
  const auto buffer = std::make_unique<unsigned char[]>(HASH_BUFFER_SIZE);
  if (!hashFile(stream.get(), length, buffer.get(), state.get(), nullptr)) {
    return nullptr;
  }
  return Block<unsigned char>(doFinal(state.get()));
}

static void checkRecord(const std::string& name, const ArchiveListing& listing) {
  if (!listing.isSigned) {
    throw InputError(name + " is not signed; make it with --key");
  }
  if (listing.signedLength != listing.recordOffset) {
    throw InputError(name + " is damaged: its signature record is at byte " +
                     std::to_string(listing.recordOffset) + " but claims to cover " +
                     std::to_string(listing.signedLength) + " bytes; make it again");
  }
  if (!listing.isWrittenForm) {
    throw InputError(name +
                     " has a signature record that is not in canonical form; make it "
                     "again");
  }
}

void checkSignature(const std::string& path, const std::string& name, const ArchiveListing& listing,
                    Rsa_key* key) {
  checkRecord(name, listing);
  const int capacity = static_cast<int>(listing.signatureHex.size() / 2 + 2);
  const auto signature = std::make_unique<unsigned char[]>(static_cast<size_t>(capacity));
  const int length = hexToBytes(signature.get(), capacity, listing.signatureHex.c_str());
  const Block<unsigned char> digest = hashStart(path, listing.signedLength);
  const QuietOutput quiet;
  if (digest == nullptr || !verifySignature(signature.get(), length, digest.get(), key)) {
    throw InputError(name + " was changed after it was signed, or signed with another key");
  }
}

}  // namespace tools
