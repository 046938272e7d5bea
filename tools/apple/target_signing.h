#ifndef QUORVANE_TOOLS_APPLE_TARGET_SIGNING_H
#define QUORVANE_TOOLS_APPLE_TARGET_SIGNING_H

#include <optional>
#include <set>
#include <string>
#include <vector>

#include "tools/apple/apple_signing.h"
#include "tools/apple/signer.h"
#include "tools/formats/archive_writer.h"
#include "tools/system/temporary_folder.h"

namespace tools {

// Signs what one build makes for a target. An installer carries the application, its updater and
// the runtime in archives, which nothing can sign afterwards: their code is signed before it is
// packed, the bundle when all is in it.
//
// With a certificate all code is signed. Without one only code that has no signature gets an ad-hoc
// one: a runtime keeps that of its maker, which is worth more.
class TargetSigning {
 public:
  // `extractor` is the target's executable; for a target that is not macOS everything stays as it
  // is, also if the file is missing. Throws InputError if the settings need a tool that is missing.
  TargetSigning(const AppleSigning& settings, const std::string& extractor);

  // Whether code is signed at all.
  bool isPossible() const { return signer_.has_value(); }
  // Whether it is with a certificate: then the bytes of two signatures of one file differ.
  bool hasCertificate() const { return signer_ && signer_->hasCertificate(); }

  // Returns the content with signed copies of its code, which exist as long as the object. `what`
  // names the component in notes. Throws InputError.
  ArchiveContent content(const ArchiveContent& content, const char* what);

  // Returns a Java home with the content of `home` and signed copies of its code. Throws
  // InputError.
  std::string runtime(const std::string& home);

  // Returns the signed copy of the program `path`, or `path` if it needs none. Throws InputError.
  std::string program(const std::string& path);

  // Signs the finished bundle folder `path`, reads the signature back, and has the bundle notarised
  // if the project says so. Nothing may change in it afterwards. Throws InputError.
  void finish(const std::string& path);

  // What the developer must know, a line each: what is not signed, and why.
  const std::vector<std::string>& notes() const { return notes_; }

 private:
  bool isNeeded(const std::string& path) const;
  std::string signedCopy(const std::string& path, CodeRole role);
  // A folder with the files of `folder`, and signed copies of its code.
  std::string stage(const std::string& folder, bool isRuntime, const std::string& what);
  void noteJar(const std::string& path, const std::string& what);
  void noteFrameworks(const std::set<std::string>& signedFiles, const std::string& what);

  const bool isForMac_;
  std::optional<Signer> signer_;
  TemporaryFolder work_;
  int copies_ = 0;
  std::vector<std::string> notes_;
};

}  // namespace tools

#endif
