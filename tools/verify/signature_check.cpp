#include "tools/verify/signature_check.h"

#include <algorithm>
#include <filesystem>

#include "tools/apple/seal.h"
#include "tools/apple/signature_info.h"
#include "tools/apple/signer.h"

namespace fs = std::filesystem;

namespace tools {

static std::string hexOf(const std::string& bytes) {
  static const char kDigits[] = "0123456789abcdef";
  std::string text;
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    text += {kDigits[byte >> 4], kDigits[byte & 15]};
  }
  return text;
}

static std::string signerOf(const CodeSignature& part, const std::string& executable,
                            BundleReport* report) {
  if (!part.hasCertificate) {
    return "ad hoc, by nobody in particular";
  }
  const std::string team = part.team.empty() ? "" : ", team " + part.team;
  const std::string tool = findRcodesign();
  if (tool.empty()) {
    return "with a certificate" + team +
           "; whose it is only rcodesign tells, which is not on the "
           "PATH";
  }
  const SignatureInfo info =
      readSignatureInfo(fs::absolute(tool).string(), fs::absolute(executable).string());
  const bool isSigned =
      std::all_of(part.hashLists.begin(), part.hashLists.end(), [&](const std::string& digest) {
        return std::find(info.digests.begin(), info.digests.end(), hexOf(digest)) !=
               info.digests.end();
      });
  if (!info.isVerified || !isSigned) {
    report->problems.emplace_back(
        "the signature of the executable was not made with the key of its "
        "certificate, or for other code");
  }
  return "by " + info.signer + team +
         (info.isFromApple ? "" : ", whose certificate is not from Apple") +
         (info.hasTimestamp ? ", with a time stamp" : ", without a time stamp");
}

std::string checkBundleSignature(const std::string& bundle, const std::string& executable,
                                 BundleReport* report) {
  const Seal seal = readSeal(bundle, executable);
  if (seal.signatures.empty()) {
    return "";
  }
  for (const std::string& fault : seal.faults) {
    report->problems.push_back(fault);
  }
  const CodeSignature& part = seal.signatures[0];
  if (!part.isSigned) {
    report->facts.emplace_back("not signed");
    return "";
  }
  std::string fact = "signed " + signerOf(part, executable, report);
  fact += part.isHardened ? "; hardened runtime" : "; no hardened runtime";
  fact += !seal.isSealed        ? "; the executable alone, no files are sealed"
          : seal.faults.empty() ? "; the seal is whole"
                                : "; the seal is broken";
  report->facts.push_back(fact);
  return "";
}

}  // namespace tools
