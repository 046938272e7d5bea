#include "tools/apple/seal.h"

#include <filesystem>

#include "tools/apple/sealed_files.h"
#include "tools/system/sha256_digest.h"
#include "tools/system/texts.h"
#include "tools/system/whole_file.h"

namespace fs = std::filesystem;

namespace tools {

static const char kSealFolder[] = "/Contents/_CodeSignature";

static std::string sealPath(const std::string& bundle) {
  return bundle + kSealFolder + "/CodeResources";
}

bool hasSeal(const std::string& bundle) {
  std::error_code ignored;
  return fs::exists(fs::symlink_status(sealPath(bundle), ignored));
}

// The digest of `content`, in the length of `wanted`.
static bool isDigestOf(const std::string& wanted, const std::string& content) {
  return !wanted.empty() &&
         sha256Of(content.data(), content.size()).substr(0, wanted.size()) == wanted;
}

namespace {

class SealCheck {
 public:
  SealCheck(const std::string& bundle, const std::string& executable)
      : contents_(bundle + "/Contents"), bundle_(bundle), executable_(executable) {}

  Seal run() {
    const std::optional<MachFile> code = readMachFile(readWhole(executable_));
    seal_.isSealed = hasSeal(bundle_);
    if (code) {
      seal_.signatures = code->parts;
      checkExecutable(*code);
    }
    if (seal_.isSealed) {
      sealed_ = readSealedFiles(readWhole(sealPath(bundle_)));
      checkListed();
      checkPresent();
    }
    return seal_;
  }

 private:
  void fault(const std::string& what) { seal_.faults.push_back(what); }

  void checkExecutable(const MachFile& code) {
    const std::string info = readWhole(contents_ + "/Info.plist");
    const std::string list = seal_.isSealed ? readWhole(sealPath(bundle_)) : "";
    const std::string name = fs::path(executable_).filename();
    for (const std::string& what : faultsOf(code)) {
      fault(name + " " + what);
    }
    for (const CodeSignature& part : seal_.signatures) {
      if (!part.isSigned || !seal_.isSealed) {
        continue;
      }
      if (!isDigestOf(part.infoDigest, info)) {
        fault("Info.plist is not as signed");
      }
      if (!isDigestOf(part.sealDigest, list)) {
        fault("the list of sealed files is not the signed one");
      }
    }
  }

  // What the list names must be there. Its names are looked up among the bundle's own files: a name
  // with ".." in it leads nowhere.
  void checkListed() {
    for (const auto& entry : fs::recursive_directory_iterator(contents_)) {
      if (entry.is_symlink() || !entry.is_directory()) {
        present_.insert({entry.path().lexically_relative(contents_), entry.path()});
      }
    }
    for (const auto& [name, file] : sealed_) {
      const auto found = present_.find(name);
      if (found != present_.end()) {
        compare(name, file, found->second);
      } else if (!file.isOptional && !file.isCode) {
        fault("Contents/" + name + " is missing");
      }
    }
  }

  void compare(const std::string& name, const SealedFile& file, const fs::path& path) {
    const bool isLink = fs::is_symlink(path);
    if (isLink != !file.link.empty() || (isLink && fs::read_symlink(path) != file.link)) {
      fault("Contents/" + name + (isLink ? " is not the sealed link" : " is not a link as sealed"));
    } else if (isLink) {
      return;
    } else if (file.isCode) {
      compareCode(name, path);
    } else if (!isDigestOf(file.digest, readWhole(path))) {
      fault("Contents/" + name + " was changed after it was sealed");
    }
  }

  // Code beside the executable is sealed by its own signature.
  void compareCode(const std::string& name, const fs::path& path) {
    const std::optional<MachFile> code = readMachFile(readWhole(path));
    if (!code || !code->isSigned()) {
      fault("Contents/" + name + " is not signed");
      return;
    }
    for (const std::string& what : faultsOf(*code)) {
      fault("Contents/" + name + " " + what);
    }
  }

  // Apple's rules leave out what belongs to the signature itself and a few names.
  bool isLeftOut(const std::string& name) const {
    return startsWith(name, "_CodeSignature/") || name == "CodeResources" ||
           contents_ + "/" + name == executable_ || name == "Info.plist" || name == "PkgInfo" ||
           fs::path(name).filename() == ".DS_Store" || endsWith(name, ".lproj/locversion.plist");
  }

  void checkPresent() {
    for (const auto& [name, path] : present_) {
      bool isCovered = sealed_.count(name) > 0 || isLeftOut(name);
      // A bundle inside the bundle has a seal of its own.
      for (fs::path above = fs::path(name).parent_path(); !isCovered && !above.empty();
           above = above.parent_path()) {
        const auto found = sealed_.find(above);
        isCovered = found != sealed_.end() && found->second.isCode;
      }
      if (!isCovered) {
        fault("Contents/" + name + " was added after the bundle was sealed");
      }
    }
  }

  const std::string contents_;
  const std::string& bundle_;
  const std::string& executable_;
  SealedFiles sealed_;
  std::map<std::string, fs::path> present_;
  Seal seal_;
};

}  // namespace

Seal readSeal(const std::string& bundle, const std::string& executable) {
  return SealCheck(bundle, executable).run();
}

}  // namespace tools
