#include "crypto/signature.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "crypto/mixed_hash.h"
#include "crypto/rsa_verify_hash_ex.h"
#include "crypto/tomcrypt.h"
#include "tests/support/capture.h"
#include "tests/support/files.h"
#include "tests/support/hex_text.h"
#include "tests/support/test_keys.h"
#include "tests/unit/crypto/messages.h"
#include "tests/unit/crypto/stock.h"
#include "tools/keys/pem.h"
#include "tools/keys/signing.h"

namespace {

const char kFailedLine[] = "ERROR - signature verification failed.\n";
const char kPssLine[] = "Doing PSS decode\n";
const char kMessage[] = "the bytes of an archive";

std::string mixedOf(const std::string& message) {
  Hash_state state;
  EXPECT_TRUE(initHash(&state));
  EXPECT_TRUE(updateHash(&state, bytesOf(message), static_cast<int>(message.size())));
  const std::unique_ptr<unsigned char, decltype(&free)> digest(doFinal(&state), free);
  return std::string(reinterpret_cast<char*>(digest.get()), MIXED_DIGEST_SIZE);
}

using Key = std::unique_ptr<Rsa_key, decltype(&freePublicKey)>;

Key import(const std::string& der) {
  return Key(loadDEREncodedPublicKey(bytesOf(der), static_cast<int>(der.size())), freePublicKey);
}

// Any key of tests/data/keys with its private half, for signatures that the tools do not make.
Key privateKey(const std::string& name) {
  const std::string path = test::keyFile(name);
  return import(tools::privateKeyFromPem(test::readFile(path), path));
}

// How a signature is made, where it differs from the right way.
struct Way {
  std::string hash = "mixed";
  unsigned long salt = 64;
  int padding = LTC_PKCS_1_PSS;
};

std::string signWith(Rsa_key* key, const std::string& digest, const Way& way = Way()) {
  EXPECT_NE(-1, register_prng(&sprng_desc));
  unsigned char signature[1024];
  unsigned long size = sizeof signature;
  EXPECT_EQ(CRYPT_OK,
            rsa_sign_hash_ex(bytesOf(digest), digest.size(), signature, &size, way.padding, nullptr,
                             find_prng("sprng"), find_hash(way.hash.c_str()), way.salt, key));
  return std::string(reinterpret_cast<char*>(signature), size);
}

struct Verdict {
  bool verified;
  std::string out;
};

bool operator==(const Verdict& a, const Verdict& b) {
  return a.verified == b.verified && a.out == b.out;
}

std::ostream& operator<<(std::ostream& stream, const Verdict& verdict) {
  return stream << (verdict.verified ? "verified, " : "refused, ") << verdict.out;
}

Verdict verdictOn(const std::string& signature, const std::string& digest, Rsa_key* key) {
  Verdict verdict{};
  verdict.out = test::capture([&] {
                  verdict.verified = verifySignature(
                      bytesOf(signature), static_cast<int>(signature.size()), bytesOf(digest), key);
                }).out;
  return verdict;
}

bool verifies(const std::string& signature, const std::string& digest, Rsa_key* key) {
  return verdictOn(signature, digest, key).verified;
}

class Signature : public testing::Test {
 protected:
  const tools::SigningKey signer = tools::SigningKey::read(test::keyFile("first"));
  const Key key = import(signer.publicKeyDer());
  const std::string digest = mixedOf(kMessage);
  const std::string signature = signer.sign(bytesOf(digest));
};

TEST_F(Signature, MadeByThePackagersToolIsVerified) {
  EXPECT_EQ((Verdict{true, kPssLine}), verdictOn(signature, digest, key.get()));
}

TEST_F(Signature, OfEmptyDataIsVerified) {
  const std::string empty = mixedOf("");
  EXPECT_TRUE(verifies(signer.sign(bytesOf(empty)), empty, key.get()));
}

TEST_F(Signature, WithARandomSaltIsVerified) {
  const Key signing = privateKey("first");
  const std::string one = signWith(signing.get(), digest);
  const std::string other = signWith(signing.get(), digest);
  EXPECT_NE(one, other);
  EXPECT_TRUE(verifies(one, digest, key.get()));
  EXPECT_TRUE(verifies(other, digest, key.get()));
}

TEST_F(Signature, OverADifferentDigestIsRefusedWithoutAMessage) {
  EXPECT_EQ((Verdict{false, kPssLine}), verdictOn(signature, mixedOf("other bytes"), key.get()));
}

TEST_F(Signature, OfDataWithOneFlippedByteIsRefused) {
  for (size_t i = 0; i < strlen(kMessage); ++i) {
    std::string altered = kMessage;
    altered[i] ^= 0x01;
    EXPECT_FALSE(verifies(signature, mixedOf(altered), key.get())) << i;
  }
}

TEST_F(Signature, OfADigestWithOneFlippedByteIsRefused) {
  for (size_t i = 0; i < digest.size(); ++i) {
    std::string altered = digest;
    altered[i] ^= 0x80;
    EXPECT_FALSE(verifies(signature, altered, key.get())) << i;
  }
}

TEST_F(Signature, WithOneFlippedByteIsRefused) {
  for (size_t i = 0; i < signature.size(); ++i) {
    std::string altered = signature;
    altered[i] ^= 0x01;
    EXPECT_FALSE(verifies(altered, digest, key.get())) << i;
  }
}

std::string exported(Rsa_key* key) {
  unsigned char der[1024];
  unsigned long size = sizeof der;
  EXPECT_EQ(CRYPT_OK, rsa_export(der, &size, PK_PUBLIC | PK_STD, key));
  return std::string(reinterpret_cast<char*>(der), size);
}

// The library overlooks a few flips in what frames the key's numbers; they leave the same key.
TEST_F(Signature, UnderAKeyWithOneFlippedByteIsRefusedUnlessTheKeyIsStillTheSame) {
  const std::string der = signer.publicKeyDer();
  int refused = 0;
  for (size_t i = 0; i < der.size(); ++i) {
    std::string altered = der;
    altered[i] ^= 0x01;
    test::capture([&] {
      const Key other = import(altered);
      const bool same = other != nullptr && exported(other.get()) == der;
      const bool verified = other != nullptr &&
                            verifySignature(bytesOf(signature), static_cast<int>(signature.size()),
                                            bytesOf(digest), other.get());
      EXPECT_EQ(same, verified) << i;
      refused += verified ? 0 : 1;
    });
  }
  EXPECT_LE(256 + 3, refused);  // the bytes of the modulus and of the exponent
}

TEST_F(Signature, UnderAnotherKeyOfTheSameSizeIsRefused) {
  const auto second = tools::SigningKey::read(test::keyFile("second"));
  EXPECT_FALSE(verifies(signature, digest, import(second.publicKeyDer()).get()));
}

TEST_F(Signature, WithAnotherSaltLengthIsRefused) {
  const Key signing = privateKey("first");
  for (const unsigned long salt : {0ul, 20ul, 32ul, 63ul, 65ul, 126ul}) {
    EXPECT_FALSE(verifies(signWith(signing.get(), digest, {"mixed", salt}), digest, key.get()))
        << salt;
  }
}

TEST_F(Signature, OverTheSha256HalfAloneIsRefused) {
  const Key signing = privateKey("first");
  const std::string half = digest.substr(0, 32);
  EXPECT_FALSE(verifies(signWith(signing.get(), half, {"sha256", 64}), digest, key.get()));
  EXPECT_FALSE(verifies(signWith(signing.get(), half, {"sha256", 32}), digest, key.get()));
  EXPECT_FALSE(verifies(signWith(signing.get(), half), digest, key.get()));
}

TEST_F(Signature, OverTheKeccakHalfAloneIsRefused) {
  const Key signing = privateKey("first");
  const std::string half = digest.substr(32);
  EXPECT_FALSE(verifies(signWith(signing.get(), half, {"sha3_256", 64}), digest, key.get()));
  EXPECT_FALSE(verifies(signWith(signing.get(), half), digest, key.get()));
}

TEST_F(Signature, OfADigestOneHalfOfWhichIsAnothersIsRefused) {
  const std::string other = mixedOf("other bytes");
  EXPECT_FALSE(verifies(signature, digest.substr(0, 32) + other.substr(32), key.get()));
  EXPECT_FALSE(verifies(signature, other.substr(0, 32) + digest.substr(32), key.get()));
}

TEST_F(Signature, OverTheFips202VariantOfTheHashIsRefused) {
  const std::string fips = digest.substr(0, 32) + stockSha3256(kMessage);
  ASSERT_NE(fips, digest);
  EXPECT_FALSE(verifies(signer.sign(bytesOf(fips)), digest, key.get()));
}

TEST_F(Signature, WithAMaskMadeByAnotherHashIsRefused) {
  const Key signing = privateKey("first");
  EXPECT_FALSE(verifies(signWith(signing.get(), digest, {"sha256", 64}), digest, key.get()));
}

TEST_F(Signature, WithVersionOnePaddingIsRefused) {
  const Key signing = privateKey("first");
  EXPECT_FALSE(
      verifies(signWith(signing.get(), digest, {"mixed", 64, LTC_PKCS_1_V1_5}), digest, key.get()));
}

TEST_F(Signature, NotAsLongAsTheModulusIsRefusedWithTheMessage) {
  const Verdict refused{false, kFailedLine};
  EXPECT_EQ(refused, verdictOn("", digest, key.get()));
  EXPECT_EQ(refused, verdictOn(signature.substr(0, 1), digest, key.get()));
  EXPECT_EQ(refused, verdictOn(signature.substr(0, signature.size() - 1), digest, key.get()));
  EXPECT_EQ(refused, verdictOn(signature.substr(1), digest, key.get()));
  EXPECT_EQ(refused, verdictOn(signature + '\0', digest, key.get()));
  EXPECT_EQ(refused, verdictOn('\0' + signature, digest, key.get()));
  EXPECT_EQ(refused, verdictOn(signature + signature, digest, key.get()));
}

TEST_F(Signature, NotAsLongAsTheModulusIsAnInvalidPacket) {
  for (const size_t size : {0ul, signature.size() - 1, signature.size() + 1}) {
    std::string sized = signature;
    sized.resize(size);
    int status = -1;
    EXPECT_EQ(CRYPT_INVALID_PACKET,
              rsa_verify_hash_ex(bytesOf(sized), size, bytesOf(digest), digest.size(),
                                 LTC_PKCS_1_PSS, find_hash("mixed"), 64, &status, key.get()));
    EXPECT_EQ(0, status);
  }
}

TEST_F(Signature, OfNegativeLengthIsRefusedWithTheMessage) {
  Verdict verdict{};
  verdict.out = test::capture([&] {
                  verdict.verified =
                      verifySignature(bytesOf(signature), -1, bytesOf(digest), key.get());
                }).out;
  EXPECT_EQ((Verdict{false, kFailedLine}), verdict);
}

TEST_F(Signature, AsLargeAsTheModulusIsRefusedWithBothMessages) {
  const std::string largest(signature.size(), '\xff');
  EXPECT_EQ((Verdict{false, std::string("1) RSA Decode failed\n") + kFailedLine}),
            verdictOn(largest, digest, key.get()));
}

TEST_F(Signature, WhoseDecodedLengthDiffersIsRefusedWithBothMessages) {
  ltc_mp.rsa_me = [](const unsigned char*, unsigned long, unsigned char*, unsigned long* length,
                     int, rsa_key*) {
    --*length;
    return static_cast<int>(CRYPT_OK);
  };
  EXPECT_EQ((Verdict{false, std::string("2) RSA Decode failed\n") + kFailedLine}),
            verdictOn(signature, digest, key.get()));
}

TEST_F(Signature, OfZerosIsRefused) {
  EXPECT_FALSE(verifies(std::string(signature.size(), '\0'), digest, key.get()));
}

// What follows the digest's 64 bytes is another's memory: the block ends there, and the address
// sanitizer watches its end.
TEST_F(Signature, TakesTheDigestAs64Bytes) {
  const std::unique_ptr<unsigned char[]> block(new unsigned char[MIXED_DIGEST_SIZE]);
  memcpy(block.get(), digest.data(), MIXED_DIGEST_SIZE);
  EXPECT_TRUE(verifySignature(bytesOf(signature), static_cast<int>(signature.size()), block.get(),
                              key.get()));
  const std::string longer = digest + "what follows is not looked at";
  EXPECT_TRUE(verifies(signature, longer, key.get()));
}

TEST_F(Signature, BeforeTheHashesAreRegisteredIsRefusedWithTheMessage) {
  unregister_hash(&mixedDescriptor);
  EXPECT_EQ((Verdict{false, kFailedLine}), verdictOn(signature, digest, key.get()));
}

using SignatureDeathTest = Signature;

TEST_F(SignatureDeathTest, WithoutAKeyAbortsWithTheLibrarysLine) {
  const auto verifyWithoutKey = [this] {
    return verifySignature(bytesOf(signature), static_cast<int>(signature.size()), bytesOf(digest),
                           nullptr);
  };
  EXPECT_EXIT(verifyWithoutKey(), testing::KilledBySignal(SIGABRT),
              "^LTC_ARGCHK 'key != NULL' failure on line [0-9]+ of file [^\n]+\n$");
}

TEST(SmallModulus, OfTheLeastSizeThatHoldsDigestAndSaltIsVerified) {
  const std::string digest = mixedOf(kMessage);
  const Key key = privateKey("modulus_1040");
  const std::string signature = signWith(key.get(), digest);
  EXPECT_EQ(130u, signature.size());
  EXPECT_EQ((Verdict{true, kPssLine}), verdictOn(signature, digest, key.get()));
}

TEST(SmallModulus, OfOneByteLessIsRefusedWithTheMessage) {
  const std::string digest = mixedOf(kMessage);
  const Key key = privateKey("modulus_1032");
  EXPECT_EQ((Verdict{false, std::string(kPssLine) + kFailedLine}),
            verdictOn(std::string(129, '\x01'), digest, key.get()));
}

TEST(OddModulus, OneBitLongerThanWholeBytesIsVerified) {
  const std::string digest = mixedOf(kMessage);
  const Key key = privateKey("modulus_1041");
  const std::string signature = signWith(key.get(), digest);
  EXPECT_EQ(131u, signature.size());
  EXPECT_TRUE(verifies(signature, digest, key.get()));
  EXPECT_FALSE(verifies(signature, mixedOf("other bytes"), key.get()));
}

TEST(LoadDerEncodedPublicKey, TakesBothDerForms) {
  const auto signer = tools::SigningKey::read(test::keyFile("first"));
  const std::string info = signer.publicKeyDer();
  const Key fromInfo = import(info);
  ASSERT_NE(nullptr, fromInfo);
  unsigned char plain[1024];
  unsigned long size = sizeof plain;
  ASSERT_EQ(CRYPT_OK, rsa_export(plain, &size, PK_PUBLIC, fromInfo.get()));
  const std::string pkcs1(reinterpret_cast<char*>(plain), size);
  ASSERT_NE(info, pkcs1);
  const Key fromPkcs1 = import(pkcs1);
  ASSERT_NE(nullptr, fromPkcs1);
  const std::string digest = mixedOf(kMessage);
  EXPECT_TRUE(verifies(signer.sign(bytesOf(digest)), digest, fromPkcs1.get()));
}

TEST(LoadDerEncodedPublicKey, InstallsLibTomMath) {
  ltc_mp = ltc_math_descriptor();
  const auto signer = tools::SigningKey::read(test::keyFile("first"));
  const std::string der = signer.publicKeyDer();
  ltc_mp = ltc_math_descriptor();
  EXPECT_NE(nullptr, import(der));
  EXPECT_STREQ("LibTomMath", ltc_mp.name);
}

TEST(LoadDerEncodedPublicKey, OfWhatIsNoKeyGivesNoneAndSaysSo) {
  const std::string der = tools::SigningKey::read(test::keyFile("first")).publicKeyDer();
  for (const std::string& bad : {std::string(), std::string("no key"), std::string(300, '\0'),
                                 der.substr(1), der.substr(0, der.size() - 1), der.substr(0, 20),
                                 test::bytesOfHex("3000"), test::bytesOfHex("30003000")}) {
    const std::string out = test::capture([&] { EXPECT_EQ(nullptr, import(bad)); }).out;
    EXPECT_EQ("ERROR - unable to import public key.\n", out) << test::hexOf(bad).substr(0, 40);
  }
}

TEST(LoadDerEncodedPublicKey, OfANegativeLengthGivesNoneAndSaysSo) {
  const std::string out =
      test::capture([] { EXPECT_EQ(nullptr, loadDEREncodedPublicKey(bytesOf("key"), -1)); }).out;
  EXPECT_EQ("ERROR - unable to import public key.\n", out);
}

TEST(FreePublicKey, OfNullComesBack) {
  EXPECT_EQ(test::CODE_RETURNED, test::runInChild([] { freePublicKey(nullptr); }).status);
}

// One verification by the program's function and by the library's own.
struct Both {
  int error = -1;
  int status = -1;
  std::string out;
  int stockError = -1;
  int stockStatus = -1;
};

Both verifyByBoth(const std::string& signature, const std::string& digest, const Way& way,
                  Rsa_key* key) {
  Both both;
  const int index = find_hash(way.hash.c_str());
  both.out = test::capture([&] {
               both.error = rsa_verify_hash_ex(bytesOf(signature), signature.size(),
                                               bytesOf(digest), digest.size(), way.padding, index,
                                               way.salt, &both.status, key);
             }).out;
  both.stockError =
      stockVerify(signature, digest, way.padding, index, way.salt, &both.stockStatus, key);
  return both;
}

// Parameter: the key's name.
class RsaVerifyHashEx : public testing::TestWithParam<const char*> {
 protected:
  const Key key = privateKey(GetParam());
  const std::string digest = mixedOf(kMessage);
  const Way way;
  const std::string signature = signWith(key.get(), digest, way);

  void expectSame(const std::string& altered, const std::string& ofDigest, const Way& how) {
    const Both both = verifyByBoth(altered, ofDigest, how, key.get());
    EXPECT_EQ(both.stockError, both.error);
    EXPECT_EQ(both.stockStatus, both.status);
  }
};

TEST_P(RsaVerifyHashEx, AcceptsWhatTheStockFunctionAccepts) {
  const Both both = verifyByBoth(signature, digest, way, key.get());
  EXPECT_EQ(CRYPT_OK, both.error);
  EXPECT_EQ(1, both.status);
  EXPECT_EQ(CRYPT_OK, both.stockError);
  EXPECT_EQ(1, both.stockStatus);
  EXPECT_EQ(kPssLine, both.out);
}

TEST_P(RsaVerifyHashEx, TreatsEveryFlippedByteAsTheStockFunctionDoes) {
  for (size_t i = 0; i < signature.size(); ++i) {
    std::string altered = signature;
    altered[i] ^= 0x10;
    const Both both = verifyByBoth(altered, digest, way, key.get());
    EXPECT_EQ(both.stockError, both.error) << i;
    EXPECT_EQ(both.stockStatus, both.status) << i;
    EXPECT_NE(1, both.status) << i;
  }
}

TEST_P(RsaVerifyHashEx, TreatsOtherDigestsHashesAndSaltsAsTheStockFunctionDoes) {
  expectSame(signature, mixedOf("other bytes"), way);
  expectSame(signature, digest.substr(0, 32), way);
  expectSame(signature, digest + "more", way);
  expectSame(signature, digest, {"sha256", 64});
  expectSame(signature, digest, {"no such hash", 64});
  expectSame(signature, digest, {"mixed", 63});
  expectSame(signature, digest, {"mixed", 4000});
  expectSame(signature.substr(1), digest, way);
}

INSTANTIATE_TEST_SUITE_P(Keys, RsaVerifyHashEx,
                         testing::Values("first", "modulus_1040", "modulus_1041"),
                         [](const auto& info) { return std::string(info.param); });

TEST_F(Signature, WithAnyPaddingButPssIsAnInvalidPadding) {
  const Key signing = privateKey("first");
  const std::string versionOne = signWith(signing.get(), digest, {"mixed", 64, LTC_PKCS_1_V1_5});
  for (const std::string& one : {signature, versionOne}) {
    for (const int padding : {static_cast<int>(LTC_PKCS_1_V1_5), 0, 2, 4, 5, -1}) {
      int status = -1;
      EXPECT_EQ(CRYPT_PK_INVALID_PADDING,
                rsa_verify_hash_ex(bytesOf(one), one.size(), bytesOf(digest), digest.size(),
                                   padding, find_hash("mixed"), 64, &status, key.get()))
          << padding;
      EXPECT_EQ(0, status);
    }
  }
}

TEST_F(SignatureDeathTest, WithoutAnArgumentAbortsWithTheLibrarysLine) {
  int status = 0;
  const auto verify = [&](const unsigned char* sig, const unsigned char* hash, int* stat) {
    return rsa_verify_hash_ex(sig, signature.size(), hash, digest.size(), LTC_PKCS_1_PSS,
                              find_hash("mixed"), 64, stat, key.get());
  };
  EXPECT_DEATH((void)verify(nullptr, bytesOf(digest), &status), "LTC_ARGCHK 'sig != NULL' failure");
  EXPECT_DEATH((void)verify(bytesOf(signature), nullptr, &status),
               "LTC_ARGCHK 'hash != NULL' failure");
  EXPECT_DEATH((void)verify(bytesOf(signature), bytesOf(digest), nullptr),
               "LTC_ARGCHK 'stat != NULL' failure");
}

}  // namespace
