#ifndef QUORVANE_TOOLS_APPLE_APPLE_SIGNING_H
#define QUORVANE_TOOLS_APPLE_APPLE_SIGNING_H

#include <map>
#include <string>
#include <variant>
#include <vector>

// What a project says about the signatures of its macOS bundles, [signing.apple].

namespace tools {

// The variable with a certificate's password: arguments can be seen by others.
constexpr char APPLE_PASSWORD_VARIABLE[] = "QUORVANE_APPLE_PASSWORD";

// The value of an entitlement.
using EntitlementValue = std::variant<bool, std::string, std::vector<std::string>>;
using Entitlements = std::map<std::string, EntitlementValue>;

struct AppleSigning {
  std::string certificate;    // a PKCS #12 file, or PEM; empty to sign ad hoc
  std::string key;            // the certificate's private key as PEM, if it is in another file
  std::string passwordFile;   // its first line opens the PKCS #12 file
  std::string identity;       // instead of a file, a certificate in the keychain of a Mac
  std::string team;           // empty for the certificate's own
  std::string notaryKey;      // an API key of the notary service, JSON
  std::string notaryProfile;  // instead, on a Mac, the name of a profile in the keychain
  Entitlements entitlements;  // more of them; one that is false is taken away
  bool hasTimestamp = true;   // that of Apple's time server
};

// Returns what is wrong with values that contradict each other or name no file, for appending to
// the section's name in a message, or an empty text.
[[nodiscard]] std::string faultOf(const AppleSigning& signing);

// Returns whether the file `certificate` is not PEM text. Throws InputError if it cannot be read.
[[nodiscard]] bool isPkcs12(const std::string& certificate);

// Returns the entitlements of a program that hosts a JVM, with those of the project, as the text of
// a property list.
std::string entitlementsText(const Entitlements& more);

}  // namespace tools

#endif
