#ifndef QUORVANE_TOOLS_APPLE_SIGNATURE_INFO_H
#define QUORVANE_TOOLS_APPLE_SIGNATURE_INFO_H

#include <string>
#include <vector>

namespace tools {

// Who signed code, in the words of rcodesign, which reads the certificates.
struct SignatureInfo {
  std::string signer;                // the certificate's subject; empty for an ad-hoc signature
  bool isVerified = false;           // the certificate's key made the signature
  bool isFromApple = false;          // Apple issued the certificate
  bool hasTimestamp = false;         // a time server confirmed the time
  std::vector<std::string> digests;  // what was signed: digests in hexadecimal digits
};

// Returns what the text of 'rcodesign print-signature-info' says of the first part of a file.
SignatureInfo parseSignatureInfo(const std::string& text);

// Asks the program `rcodesign` about the signed Mach-O file `path`. Throws InputError if it fails.
SignatureInfo readSignatureInfo(const std::string& rcodesign, const std::string& path);

}  // namespace tools

#endif
