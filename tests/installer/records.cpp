#include "tests/installer/records.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>

#include "crypto/mixed_hash.h"
#include "tests/support/files.h"
#include "tests/support/temp_folder.h"
#include "tools/formats/lzma.h"

namespace test {

std::string fileRecord(const std::string& path, const std::string& bytes) {
  return field("0") + field(path) + field(std::to_string(bytes.size())) + bytes;
}

std::string folderRecord(const std::string& path) {
  return field("1") + field(path);
}

std::string signedBy(const tools::SigningKey& key, const std::string& records) {
  const std::unique_ptr<Hash_state, decltype(&free)> state(allocHashState(), &free);
  EXPECT_TRUE(initHash(state.get()));
  EXPECT_TRUE(updateHash(state.get(), reinterpret_cast<const unsigned char*>(records.data()),
                         static_cast<int>(records.size())));
  const std::unique_ptr<unsigned char, decltype(&free)> digest(doFinal(state.get()), &free);
  const std::string data =
      field(std::to_string(records.size())) + field(key.signatureHex(digest.get()));
  return records + field("0") + field("qvArcSpBlock_DigitalSignature1") +
         field(std::to_string(data.size())) + data;
}

std::string compressed(const std::string& bytes) {
  const TempFolder folder;
  writeFile(folder / "in", bytes);
  tools::lzmaCompress(folder / "in", folder / "out");
  return readFile(folder / "out");
}

std::string nestedRecord(const std::string& name, const std::string& records) {
  return fileRecord(name + ".p2.l2", compressed(records));
}

}  // namespace test
