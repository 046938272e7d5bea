#ifndef QUORVANE_TOOLS_APPLE_CODE_SIGNATURE_H
#define QUORVANE_TOOLS_APPLE_CODE_SIGNATURE_H

#include <optional>
#include <string>
#include <vector>

// The signatures in Mach-O files: what they say, and whether the file is as it was signed. Who the
// certificate belongs to, and whether it signed this, is left to the tools that know certificates.

namespace tools {

// The signature of the code for one processor.
struct CodeSignature {
  bool isSigned = false;
  bool needsOne = false;  // is for a processor on which a Mac runs no code without a signature
  bool hasCertificate = false;  // false for an ad-hoc signature, which anyone can make
  bool isHardened = false;      // asks for the hardened runtime
  std::string identifier;
  std::string team;  // empty for none
  // The SHA-256 digests of the lists of hashes that were compared, which are what a certificate
  // signs: mostly one.
  std::vector<std::string> hashLists;
  std::string entitlements;  // a property list as XML; empty for none
  // The SHA-256 digests of Info.plist and of the list of sealed files; empty where not covered.
  std::string infoDigest;
  std::string sealDigest;
  // What is not as it was signed, for appending to the file's name; empty if all is.
  std::vector<std::string> faults;
};

struct MachFile {
  bool isProgram = false;            // has an entry point; the others are libraries and bundles
  std::vector<CodeSignature> parts;  // one for each processor, at least one

  // Whether each part is signed.
  bool isSigned() const;
};

// Reads the bytes of a file. Returns nothing if it is no Mach-O file; one that breaks off or lies
// about its lengths is returned with faults. Every byte that a signature covers is hashed.
[[nodiscard]] std::optional<MachFile> readMachFile(const std::string& bytes);

// Returns what is wrong with the file, for appending to its name: what is not as it was signed, and
// a missing signature where no Mac runs it without one.
[[nodiscard]] std::vector<std::string> faultsOf(const MachFile& file);

// The number of first bytes that beginsMachFile() looks at.
constexpr size_t MACH_HEAD_SIZE = 8;

// Returns whether a file with these first bytes is a Mach-O file.
[[nodiscard]] bool beginsMachFile(const std::string& head);

// Returns whether the file `path` begins as a Mach-O file does, reading a few bytes. Throws
// InputError if it cannot be read.
[[nodiscard]] bool isMachFile(const std::string& path);

}  // namespace tools

#endif
