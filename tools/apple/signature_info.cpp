#include "tools/apple/signature_info.h"

#include <sstream>

#include "tools/system/child_process.h"

namespace tools {

// The value of a line "key: value", without the quotes that some need.
static std::string valueOf(const std::string& line, const std::string& key) {
  const size_t start = line.find_first_not_of(" -");
  if (start == std::string::npos || line.compare(start, key.size() + 2, key + ": ") != 0) {
    return "";
  }
  std::string value = line.substr(start + key.size() + 2);
  if (value.size() > 1 && (value[0] == '\'' || value[0] == '"') && value.back() == value[0]) {
    value = value.substr(1, value.size() - 2);
  }
  return value;
}

// The digests are texts of hexadecimal digits, in lines of their own or behind a key.
static void takeDigest(const std::string& line, SignatureInfo* info) {
  constexpr size_t kDigits = 64;
  const size_t end = line.find_last_of("0123456789abcdef");
  const size_t start =
      end == std::string::npos ? end : line.find_last_not_of("0123456789abcdef", end);
  if (start != std::string::npos && end - start == kDigits) {
    info->digests.push_back(line.substr(start + 1, kDigits));
  }
}

SignatureInfo parseSignatureInfo(const std::string& text) {
  struct Certificate {
    std::string subject;
    std::string issuer;
    bool isFromApple = false;
  };
  SignatureInfo info;
  std::vector<Certificate> certificates;
  std::string issuer;
  bool isInSignature = false;
  bool isInSigners = false;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) {
    if (line.find("time_stamp_token:") != std::string::npos) {
      info.hasTimestamp = line.find("null") == std::string::npos;
      break;  // it has certificates and signers of its own
    }
    isInSignature = isInSignature || line.find(" cms:") != std::string::npos;
    isInSigners = isInSigners || (isInSignature && line.find(" signers:") != std::string::npos);
    if (!isInSignature) {
      continue;
    }
    if (!isInSigners && !valueOf(line, "subject").empty()) {
      certificates.push_back({valueOf(line, "subject"), "", false});
    } else if (!isInSigners && !certificates.empty() && !valueOf(line, "issuer").empty()) {
      certificates.back().issuer = valueOf(line, "issuer");
    } else if (!isInSigners && !certificates.empty() &&
               valueOf(line, "chains_to_apple_root_ca") == "true") {
      certificates.back().isFromApple = true;
    } else if (isInSigners) {
      issuer = issuer.empty() ? valueOf(line, "issuer") : issuer;
      info.isVerified = info.isVerified || valueOf(line, "signature_verifies") == "true";
      takeDigest(line, &info);
    }
  }
  for (const Certificate& certificate : certificates) {
    if (info.signer.empty() && certificate.issuer == issuer) {
      info.signer = certificate.subject;
      info.isFromApple = certificate.isFromApple;
    }
  }
  return info;
}

SignatureInfo readSignatureInfo(const std::string& rcodesign, const std::string& path) {
  return parseSignatureInfo(runForOutput({rcodesign, "print-signature-info", path}, "/"));
}

}  // namespace tools
