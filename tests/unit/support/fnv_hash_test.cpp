#include "support/encoding/fnv_hash.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/capture.h"

static uint32_t hashOf(const std::string& text) {
  uint32_t hash = 0;
  test::capture([&] { hash = fnvHash(text.data(), static_cast<long>(text.size())); });
  return hash;
}

TEST(FnvHash, HashesTheSingleByteA) {
  EXPECT_EQ(0xE40C292Cu, hashOf("a"));
}

TEST(FnvHash, HashesAWordAndHighBytesAsUnsigned) {
  EXPECT_EQ(0xBF9CF968u, hashOf("foobar"));
  EXPECT_EQ((0x811C9DC5u ^ 0xFFu) * 0x01000193u, hashOf("\xFF"));
}

TEST(FnvHash, GivesTheOffsetBasisForALengthBelowOne) {
  EXPECT_EQ(2166136261u, fnvHash("a", 0));
  EXPECT_EQ(2166136261u, fnvHash("a", -1));
}

TEST(FnvHash, TracesEveryByteAndTheHashAsSignedNumbers) {
  const auto second = static_cast<int32_t>((0xE40C292Cu ^ 0xFFu) * 0x01000193u);
  EXPECT_EQ((std::vector<std::string>{"[0] 97 -468965076", "[1] -1 " + std::to_string(second)}),
            test::logLinesOf([] { fnvHash("a\xFF", 2); }));
}
