// Archives: whatever they hold, their extraction ends, writes nothing outside of its destination,
// neither by name nor through an existing link, and none is accepted when a signature is
// asked for, since the key's private half has signed nothing.

#include <filesystem>
#include <fstream>
#include <string>

#include "archive/archive.h"
#include "crypto/signature.h"
#include "support/encoding/hex.h"
#include "support/owned.h"
#include "tests/fuzz/fuzz_target.h"

namespace fs = std::filesystem;

static const size_t kLongest = 4096;
static const int kMostRecords = 50;
static const char kNoTool[] = "/nonexistent/tool";
static const char kPublicKey[] =
    "30820122300d06092a864886f70d01010105000382010f003082010a0282010100a898130ef01d98f2f64fc3"
    "2308e15899da1bc9d6c976364cd41171786e8ec3e7ea4e7110e5cc20a3fa39ebd497326f7aa9eba30eebfe94"
    "5d5384b8a382547bc0f4784ece4d793f5ac60c76cd1c6bbe6c8281e8cc9dc6f134eec4c12ee42c07147b4141"
    "e822c30ba6a40d3cbc6789c22d69ffa352775a84460ee139e5634967a774b351174d23864554bf46d5ea76c6"
    "e61a94b064a973b245020d2685e4cf16b92c7099aad7ddba6f73fdbc7e708ae1a5f3830f09826aeb0b95d00c"
    "314563848e6d93d8b175e528eeca48593ea646b8e073f355bd409c8591df45ab2e0b0f342bbcf71320567780"
    "e0d2a128350894fc32410124d6df19d1466938c2446dddb6a70203010001";

// What the first byte of the input chooses.
enum Choice : unsigned char { REQUIRE_SIGNATURE = 1, RECORD_BY_RECORD = 2, LINK_INSIDE = 4 };

static Rsa_key* publicKey() {
  unsigned char der[sizeof kPublicKey / 2 + 2];
  const int length = hexToBytes(der, sizeof der, kPublicKey);
  return loadDEREncodedPublicKey(der, length);
}

// Reads records as an installer reads those behind its Tail.
static void readRecords(const std::string& archive, const std::string& dest, Rsa_key* key) {
  const Stream stream(fopen(archive.c_str(), "rb"));
  int result = 0;
  for (int i = 0; i < kMostRecords && result == 0; ++i) {
    long signedLength = -1;
    char* hex = nullptr;
    result = extractArchiveFileCheckSignature(kNoTool, nullptr, dest.c_str(), stream.get(),
                                              &signedLength, &hex, key);
    const Block<char> owned(hex);
    fuzz::require(result == 0 || result == -1, "a record returns 0 or -1");
    fuzz::require(hex == nullptr || result == -1, "a signature ends the archive");
    if (!fs::exists(dest)) {
      return;
    }
  }
}

static size_t countIn(const std::string& folder) {
  const fs::directory_iterator first(folder);
  return static_cast<size_t>(std::distance(begin(first), end(first)));
}

// A destination beside an archive and a folder that nothing may be written to.
struct Scene {
  Scene(const std::string& bytes, bool hasLinks) {
    fs::create_directory(dest);
    fs::create_directory(outside);
    if (hasLinks) {
      fs::create_symlink("../outside", dest + "/link");
      fs::create_symlink("../outside/new", dest + "/new");
    }
    std::ofstream(archive, std::ios::binary) << bytes;
  }

  std::string folder = fuzz::emptyFolder();
  std::string archive = folder + "/archive.p2";
  std::string dest = folder + "/dest";
  std::string outside = folder + "/outside";
};

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size == 0 || size > kLongest) {
    return 0;
  }
  static Rsa_key* const key = publicKey();
  const unsigned char choice = data[0];
  const Scene scene(std::string(data + 1, data + size), (choice & LINK_INSIDE) != 0);
  const bool isRequired = (choice & REQUIRE_SIGNATURE) != 0;
  int status = 0;
  const bool isEnd = fuzz::endsProcess(
      [&] {
        if ((choice & RECORD_BY_RECORD) != 0) {
          readRecords(scene.archive, scene.dest, key);
        } else {
          extractArchive(kNoTool, scene.archive.c_str(), scene.dest.c_str(), {key, isRequired});
        }
      },
      &status);
  fuzz::require(!isEnd || status == 1 || status == 101, "the process ends with status 1 or 101");
  const bool isChecked = isRequired && (choice & RECORD_BY_RECORD) == 0;
  fuzz::require(isEnd || !isChecked || !fs::exists(scene.dest),
                "no archive passes for a signed one");
  fuzz::require(countIn(scene.outside) == 0, "nothing is written through a link");
  fs::remove_all(scene.dest);
  fs::remove(scene.archive);
  fuzz::require(countIn(scene.folder) == 1, "nothing is written beside the destination");
  return 0;
}
