#ifndef QUORVANE_TOOLS_APPLE_SIGNER_H
#define QUORVANE_TOOLS_APPLE_SIGNER_H

#include <string>

#include "tools/apple/apple_signing.h"
#include "tools/system/temporary_folder.h"

namespace tools {

// What a signed file is entitled to.
enum class CodeRole {
  jvm,    // what a program that hosts a JVM needs, and what the project adds
  other,  // what its earlier signature says, if it has one
};

// Signs code and bundles for macOS with the tool that this machine has: rcodesign, or codesign on a
// Mac. All functions but the first throw InputError, with the tool's own words, if it fails.
class Signer {
 public:
  // Finds the tool on the PATH. Throws InputError if the settings need one that is missing.
  explicit Signer(const AppleSigning& settings);

  // Whether there is a tool at all; if not, nothing else may be called. It is missing only if the
  // settings name no certificate.
  bool isAvailable() const { return tool_ != Tool::none; }
  // Whether it signs with a certificate, and not ad hoc.
  bool hasCertificate() const;

  // Signs the Mach-O file `path`, in place.
  void signFile(const std::string& path, CodeRole role) const;

  // Signs the bundle `path`: code in it first, then its files. Its executable hosts a JVM.
  void signBundle(const std::string& path) const;

  // Whether the settings ask for notarise().
  bool mustNotarise() const;
  // Uploads the signed bundle `path`, waits for the answer, which takes minutes, and attaches the
  // ticket. Throws InputError if the service refuses it.
  void notarise(const std::string& path) const;

 private:
  enum class Tool { none, rcodesign, codesign };

  void findTool();
  void sign(const std::string& path, CodeRole role) const;
  void run(const std::vector<std::string>& arguments) const;
  std::vector<std::string> certificateArguments() const;

  const AppleSigning settings_;
  Tool tool_ = Tool::none;
  std::string program_;
  std::string password_;  // a file with it; empty for none
  // Readable by this account alone.
  TemporaryFolder work_;
};

// Returns the path of rcodesign, or an empty text if it is not on the PATH.
std::string findRcodesign();

}  // namespace tools

#endif
