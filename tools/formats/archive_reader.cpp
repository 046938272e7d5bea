#include "tools/formats/archive_reader.h"

#include <cstdio>
#include <memory>

#include "archive/entry.h"
#include "archive/entry_path.h"
#include "crypto/hash_file.h"
#include "crypto/mixed_hash.h"
#include "support/encoding/field_reader.h"
#include "support/encoding/hex.h"
#include "support/owned.h"
#include "tools/formats/strict_fields.h"
#include "tools/system/input_error.h"
#include "tools/system/quiet_output.h"
#include "tools/system/whole_file.h"

namespace tools {

// Reads records; errors give the archive's path and the offset.
class RecordReader {
 public:
  RecordReader(const std::string& path, const std::string& name)
      : stream_(openInput(path)), fields_(stream_.get(), name, "make it again") {}

  ArchiveListing read() {
    ArchiveListing listing;
    while (!listing.isSigned && !fields_.isAtEnd()) {
      const long offset = position();
      ArchiveEntry entry = readHead();
      if (entry.kind != EntryKind::folder && entry.path == SIGNATURE_RECORD_PATH) {
        readSignature(offset, &listing);
      } else {
        skipData(entry);
        listing.entries.push_back(std::move(entry));
      }
    }
    if (!fields_.isAtEnd()) {
      fail(position(), "bytes follow the signature record");
    }
    return listing;
  }

 private:
  [[noreturn]] void fail(long offset, const std::string& what) const { fields_.fail(offset, what); }

  long position() const { return static_cast<long>(fields_.position()); }

  ArchiveEntry readHead() {
    const long offset = position();
    const std::string type = fields_.text("an entry's type", DEFAULT_FIELD_LIMIT);
    ArchiveEntry entry;
    if (type == "1") {
      entry.kind = EntryKind::folder;
    } else if (type == "2") {
      entry.kind = EntryKind::pack200;
    } else if (type != "0") {
      fail(offset, "an entry's type is '" + type + "', expected 0, 1 or 2");
    }
    entry.path = fields_.text("an entry's path", DEFAULT_FIELD_LIMIT);
    if (const char* fault = entryPathError(entry.path.c_str())) {
      fail(offset, "the entry '" + entry.path + "' is refused, " + fault);
    }
    if (entry.kind != EntryKind::folder) {
      entry.length = fields_.number("an entry's length");
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
    listing->signedLength = fields_.number("the signed length");
    listing->signatureHex = fields_.text("the signature", SIGNATURE_HEX_LIMIT);
    const long end = position();
    const std::string wanted = signatureRecord(listing->signedLength, listing->signatureHex);
    std::string found(static_cast<size_t>(end - offset), '\0');
    fseeko(stream_.get(), offset, SEEK_SET);
    listing->isWrittenForm =
        fread(found.data(), 1, found.size(), stream_.get()) == found.size() && found == wanted &&
        listing->signatureHex.find_first_not_of("0123456789abcdef") == std::string::npos;
  }

  Stream stream_;
  StrictFields fields_;
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
