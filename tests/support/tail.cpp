#include "tests/support/tail.h"

#include "tests/support/files.h"

namespace test {

// As text, so that the marker's bytes do not stand in the test's executable.
static const char kMarkerInHex[] =
    "1d432a505b7a1f642347212417323c50"
    "216c0466295c297b0b5b19332f4f0f4d"
    "2758182415394e792b7615593d574900"
    "112905652b1070665e2d406075433008"
    "614a747e401b533b5646371e4b2c7259"
    "30443a3c2f44782b2665717139732523"
    "101451243170104a0d05572a060a5321"
    "4d2c130036291a74472d1a552c2f4263";

std::string tailMarker() {
  const std::string hex = kMarkerInHex;
  std::string bytes;
  for (size_t i = 0; i < hex.size(); i += 2) {
    bytes.push_back(static_cast<char>(std::stoi(hex.substr(i, 2), nullptr, 16)));
  }
  return bytes;
}

std::string fieldsOf(const Tail& tail) {
  return field(tail.appName) + field(tail.appVersion) + field(tail.jreVersion) +
         field(tail.guVersion) + field(tail.minSplashMs) + field(tail.publicKey) +
         field(tail.canOverrideSplash) + field(tail.installType) + field(tail.silentParameter) +
         field(tail.requiredJavaVersion) + field(tail.updateUrl);
}

}  // namespace test
