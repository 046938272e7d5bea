#ifndef QUORVANE_TESTS_SUPPORT_TAIL_H
#define QUORVANE_TESTS_SUPPORT_TAIL_H

#include <string>

namespace test {

// The 128 bytes in front of a Tail record that is appended to an executable.
std::string tailMarker();

// The fields of a Tail record, with the values that a test has no need to choose.
struct Tail {
  std::string appName = "Demo";
  std::string appVersion;
  std::string jreVersion;
  std::string guVersion;
  std::string minSplashMs = "0";
  std::string publicKey;
  std::string canOverrideSplash = "0";
  std::string installType = "perm_user";
  std::string silentParameter = "-silent";
  std::string requiredJavaVersion;
  std::string updateUrl = "http://127.0.0.1/";
};

// The record's eleven fields in the field encoding, without the marker.
std::string fieldsOf(const Tail& tail);

}  // namespace test

#endif
