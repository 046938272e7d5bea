#include "crypto/hash_file.h"

#include <dlfcn.h>
#include <gtest/gtest.h>
#include <pthread.h>
#include <unistd.h>

#include <cerrno>
#include <memory>
#include <string>
#include <vector>

#include "crypto/mixed_hash.h"
#include "crypto/sha3_256.h"
#include "crypto/tomcrypt.h"
#include "support/owned.h"
#include "tests/support/files.h"
#include "tests/support/hex_text.h"
#include "tests/support/temp_folder.h"
#include "tests/unit/crypto/messages.h"

// What the system says to the hash: the number of processors, and whether threads can be started.
static long processors = 2;
static bool areThreadsRefused = false;
static int threadsStarted = 0;

// These two take the place of the C library's functions in this executable.
extern "C" long sysconf(int name) {
  static const auto next = reinterpret_cast<long (*)(int)>(dlsym(RTLD_NEXT, "sysconf"));
  return name == _SC_NPROCESSORS_ONLN ? processors : next(name);
}

using StartThread = int (*)(pthread_t*, const pthread_attr_t*, void* (*)(void*), void*);

extern "C" int pthread_create(pthread_t* thread, const pthread_attr_t* attributes,
                              void* (*body)(void*), void* argument) {
  static const auto next = reinterpret_cast<StartThread>(dlsym(RTLD_NEXT, "pthread_create"));
  if (areThreadsRefused) {
    return EAGAIN;
  }
  ++threadsStarted;
  return next(thread, attributes, body, argument);
}

static int piecesSeen = 0;

static void countPiece() {
  ++piecesSeen;
}

class HashFile : public testing::Test {
 protected:
  HashFile() {
    processors = 2;
    areThreadsRefused = false;
    threadsStarted = 0;
    piecesSeen = 0;
    EXPECT_TRUE(initHash(state_.get()));
  }

  bool hash(const std::string& content, long length, void (*progress)() = countPiece) {
    const std::string path = folder_ / "file";
    test::writeFile(path, content);
    const Stream file(fopen(path.c_str(), "rb"));
    std::vector<unsigned char> buffer(HASH_BUFFER_SIZE);
    return hashFile(file.get(), length, buffer.data(), state_.get(), progress);
  }

  static std::string finish(Hash_state* state) {
    const Block<unsigned char> digest(doFinal(state));
    return digest == nullptr ? "" : test::hexOf(digest.get(), MIXED_DIGEST_SIZE);
  }

  static std::string digestOf(const std::string& content) {
    const Block<Hash_state> state(allocHashState());
    EXPECT_TRUE(initHash(state.get()));
    EXPECT_TRUE(updateHash(state.get(), bytesOf(content), static_cast<int>(content.size())));
    return finish(state.get());
  }

  const test::TempFolder folder_;
  const Block<Hash_state> state_{allocHashState()};
};

TEST_F(HashFile, OnTwoThreadsIsTheDigestOfTheBytesWhateverTheirNumber) {
  for (const size_t size : {HASH_PIECE_SIZE + 1, 2 * HASH_PIECE_SIZE, HASH_BUFFER_SIZE - 1,
                            HASH_BUFFER_SIZE, HASH_BUFFER_SIZE + 1, 3 * HASH_BUFFER_SIZE + 17}) {
    const std::string content = messageOf(size);
    threadsStarted = 0;
    ASSERT_TRUE(initHash(state_.get()));
    ASSERT_TRUE(hash(content, static_cast<long>(size)));
    EXPECT_EQ(1, threadsStarted) << size;
    EXPECT_EQ(digestOf(content), finish(state_.get())) << size;
  }
}

TEST_F(HashFile, OfOnePieceOrLessStartsNoThread) {
  for (const size_t size : {size_t{0}, size_t{1}, HASH_PIECE_SIZE}) {
    const std::string content = messageOf(size);
    ASSERT_TRUE(initHash(state_.get()));
    ASSERT_TRUE(hash(content, static_cast<long>(size)));
    EXPECT_EQ(digestOf(content), finish(state_.get())) << size;
  }
  EXPECT_EQ(0, threadsStarted);
}

TEST_F(HashFile, OnOneProcessorStartsNoThread) {
  processors = 1;
  const std::string content = messageOf(HASH_BUFFER_SIZE + 5);
  ASSERT_TRUE(hash(content, static_cast<long>(content.size())));
  EXPECT_EQ(0, threadsStarted);
  EXPECT_EQ(digestOf(content), finish(state_.get()));
}

TEST_F(HashFile, WhereNoThreadCanBeStartedIsMadeAllTheSame) {
  areThreadsRefused = true;
  const std::string content = messageOf(HASH_BUFFER_SIZE + 5);
  ASSERT_TRUE(hash(content, static_cast<long>(content.size())));
  EXPECT_EQ(digestOf(content), finish(state_.get()));
}

TEST_F(HashFile, TakesNoMoreBytesThanAskedFor) {
  const std::string content = messageOf(2 * HASH_BUFFER_SIZE);
  const size_t length = HASH_BUFFER_SIZE + 3;
  ASSERT_TRUE(hash(content, static_cast<long>(length)));
  EXPECT_EQ(digestOf(content.substr(0, length)), finish(state_.get()));
}

TEST_F(HashFile, OfAFileThatEndsEarlierIsThatOfItsBytes) {
  for (const long available : {1L, 2L}) {
    processors = available;
    const std::string content = messageOf(HASH_PIECE_SIZE * 3 / 2);
    ASSERT_TRUE(initHash(state_.get()));
    ASSERT_TRUE(hash(content, 1'000'000'000L));
    EXPECT_EQ(digestOf(content), finish(state_.get())) << available;
  }
}

TEST_F(HashFile, TellsOfEveryPiece) {
  for (const long available : {1L, 2L}) {
    processors = available;
    piecesSeen = 0;
    const std::string content = messageOf(3 * HASH_PIECE_SIZE + 1);
    ASSERT_TRUE(hash(content, static_cast<long>(content.size())));
    EXPECT_EQ(4, piecesSeen) << available;
  }
}

TEST_F(HashFile, WithNobodyToTellWorks) {
  const std::string content = messageOf(HASH_BUFFER_SIZE);
  ASSERT_TRUE(hash(content, static_cast<long>(content.size()), nullptr));
  EXPECT_EQ(digestOf(content), finish(state_.get()));
}

// A finished Keccak half takes nothing more.
TEST_F(HashFile, ThatTheHashRefusesIsReportedOnOneThreadAndOnTwo) {
  unsigned char digest[32];
  ASSERT_EQ(CRYPT_OK, sha3_256_done(state_.get(), digest));
  for (const long available : {1L, 2L}) {
    processors = available;
    const std::string content = messageOf(HASH_BUFFER_SIZE * 2);
    EXPECT_FALSE(hash(content, static_cast<long>(content.size()))) << available;
  }
}
