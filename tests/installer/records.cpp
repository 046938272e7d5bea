#include "tests/installer/records.h"

#include <gtest/gtest.h>
#include <lzma.h>

#include <cstdlib>
#include <memory>

#include "crypto/mixed_hash.h"
#include "tests/support/files.h"
#include "tests/support/test_keys.h"

namespace test {

// Every installer of the tests is packed anew: what the packager's own level saves in bytes would
// cost them a quarter of their time.
static const uint32_t kFastest = 0;

std::string fileRecord(const std::string& path, const std::string& bytes) {
  return field("0") + field(path) + field(std::to_string(bytes.size())) + bytes;
}

std::string folderRecord(const std::string& path) {
  return field("1") + field(path);
}

tools::SigningKey testKey(const std::string& name) {
  return tools::SigningKey::read(keyFile(name));
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
  lzma_options_lzma options;
  EXPECT_FALSE(lzma_lzma_preset(&options, kFastest));
  lzma_stream stream = LZMA_STREAM_INIT;
  EXPECT_EQ(LZMA_OK, lzma_alone_encoder(&stream, &options));
  std::string out(bytes.size() + bytes.size() / 8 + 1024, '\0');
  stream.next_in = reinterpret_cast<const uint8_t*>(bytes.data());
  stream.avail_in = bytes.size();
  stream.next_out = reinterpret_cast<uint8_t*>(out.data());
  stream.avail_out = out.size();
  EXPECT_EQ(LZMA_STREAM_END, lzma_code(&stream, LZMA_FINISH));
  out.resize(stream.total_out);
  lzma_end(&stream);
  return out;
}

std::string nestedRecord(const std::string& name, const std::string& records) {
  return fileRecord(name + ".p2.l2", compressed(records));
}

}  // namespace test
