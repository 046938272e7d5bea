#include "tests/support/signature_record.h"

#include <cstdlib>

#include "archive/entry.h"
#include "support/encoding/hex.h"

namespace test {

static const char kHead[] = "0\0qvArcSpBlock_DigitalSignature1";

size_t signatureRecordOf(const std::string& whole) {
  return whole.rfind(std::string(kHead, sizeof kHead));
}

// Takes the next field, with its zero byte, off the front of `bytes`. Without a zero byte `bytes`
// becomes empty, and so is the field.
static std::string takeField(std::string* bytes) {
  const size_t end = bytes->find('\0');
  if (end == std::string::npos) {
    bytes->clear();
    return "";
  }
  std::string text = bytes->substr(0, end);
  bytes->erase(0, end + 1);
  return text;
}

namespace {

struct Record {
  explicit Record(std::string bytes) {
    type = takeField(&bytes);
    path = takeField(&bytes);
    takeField(&bytes);
    signedLength = atol(takeField(&bytes).c_str());
    const std::string hex = takeField(&bytes);
    signature.resize(hex.size() / 2 + 2);
    const int length = hexToBytes(reinterpret_cast<unsigned char*>(signature.data()),
                                  static_cast<int>(signature.size()), hex.c_str());
    signature.resize(static_cast<size_t>(length));
  }

  bool isSignatureRecord() const {
    return !type.empty() && atol(type.c_str()) != FOLDER_ENTRY && path == SIGNATURE_RECORD_PATH;
  }

  std::string type;
  std::string path;
  long signedLength = 0;
  std::string signature;
};

}  // namespace

bool saysTheSame(const std::string& changed, const std::string& whole) {
  const size_t offset = signatureRecordOf(whole);
  if (changed.compare(0, offset, whole, 0, offset) != 0) {
    return false;
  }
  const Record found(changed.substr(offset));
  const Record wanted(whole.substr(offset));
  return found.isSignatureRecord() && found.signedLength == wanted.signedLength &&
         found.signature == wanted.signature;
}

}  // namespace test
