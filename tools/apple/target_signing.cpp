#include "tools/apple/target_signing.h"

#include <filesystem>

#include "tools/apple/code_signature.h"
#include "tools/apple/jar_libraries.h"
#include "tools/apple/seal.h"
#include "tools/bundle/bundle_reader.h"
#include "tools/system/folder_tree.h"
#include "tools/system/input_error.h"
#include "tools/system/texts.h"
#include "tools/system/whole_file.h"

namespace fs = std::filesystem;

namespace tools {

TargetSigning::TargetSigning(const AppleSigning& settings, const std::string& extractor)
    : isForMac_(fs::is_regular_file(extractor) && isMachFile(extractor)) {
  if (!isForMac_) {
    return;
  }
  signer_.emplace(settings);
  if (!signer_->isAvailable()) {
    signer_.reset();
    notes_.emplace_back(
        "nothing is signed, because there is no rcodesign on the PATH: a Mac with Apple's "
        "processor "
        "starts no program without a signature, and no Mac opens a downloaded bundle without that "
        "of a Developer ID");
  } else if (!signer_->hasCertificate()) {
    notes_.emplace_back(
        "[signing.apple] names no certificate: the signatures are ad-hoc ones, with which a Mac "
        "does not open a downloaded bundle");
  }
}

bool TargetSigning::isNeeded(const std::string& path) const {
  if (!signer_ || !isMachFile(path)) {
    return false;
  }
  const std::optional<MachFile> code = readMachFile(readWhole(path));
  return signer_->hasCertificate() || !code || !code->isSigned();
}

std::string TargetSigning::signedCopy(const std::string& path, CodeRole role) {
  if (!signer_) {
    return path;
  }
  // The tool takes the identifier of a signature from the name.
  const std::string folder = work_ / std::to_string(copies_++);
  const std::string copy = folder + "/" + fs::path(path).filename().string();
  fs::create_directory(folder);
  writeWhole(copy, readWhole(path), 0755);
  signer_->signFile(copy, role);
  return copy;
}

// What the launcher of new processes in a runtime does needs no JVM.
static CodeRole roleOf(const std::string& path, bool isRuntime) {
  const std::optional<MachFile> code = readMachFile(readWhole(path));
  const bool hostsJvm = isRuntime && code && code->isProgram && !endsWith(path, "/jspawnhelper");
  return hostsJvm ? CodeRole::jvm : CodeRole::other;
}

// The same file under another name where the file system can do that.
static void linkOrCopy(const std::string& from, const fs::path& to) {
  const fs::path file = fs::canonical(from);
  std::error_code error;
  fs::create_hard_link(file, to, error);
  if (error) {
    fs::copy_file(file, to);
  }
}

// A framework that is signed as a bundle needs its links, and archives hold copies instead.
void TargetSigning::noteFrameworks(const std::set<std::string>& signedFiles,
                                   const std::string& what) {
  const std::string extension = ".framework";
  std::set<std::string> frameworks;
  for (const std::string& path : signedFiles) {
    const size_t at = path.find(extension + "/");
    if (at != std::string::npos) {
      frameworks.insert(path.substr(0, at + extension.size()));
    }
  }
  for (const std::string& framework : frameworks) {
    notes_.push_back(what + ": " + framework +
                     " is signed file by file and not as a bundle, so that nothing seals its "
                     "resources");
  }
}

std::string TargetSigning::stage(const std::string& folder, bool isRuntime,
                                 const std::string& what) {
  std::string staged = folder;
  std::set<std::string> signedFiles;
  const FolderTree tree = listFolder(folder);
  for (const auto& [path, item] : tree) {
    if (item.isFolder || !isNeeded(item.source)) {
      continue;
    }
    if (staged == folder) {
      staged = work_ / std::to_string(copies_++);
      fs::create_directory(staged);
      for (const auto& [other, source] : tree) {
        if (source.isFolder) {
          fs::create_directory(fs::path(staged) / other);
        } else {
          linkOrCopy(source.source, fs::path(staged) / other);
        }
      }
    }
    signedFiles.insert(path);
    const fs::path place = fs::path(staged) / path;
    fs::remove(place);
    fs::rename(signedCopy(item.source, roleOf(item.source, isRuntime)), place);
  }
  noteFrameworks(signedFiles, what);
  return staged;
}

void TargetSigning::noteJar(const std::string& path, const std::string& what) {
  const std::vector<std::string> libraries = nativeLibrariesIn(path);
  if (!libraries.empty()) {
    notes_.push_back(what + ": " + fs::path(path).filename().string() + " contains " +
                     std::to_string(libraries.size()) +
                     (libraries.size() == 1 ? " native library" : " native libraries") +
                     ", which keep the signature they have, or none: " + libraries[0] +
                     (libraries.size() == 1 ? "" : ", ..."));
  }
}

ArchiveContent TargetSigning::content(const ArchiveContent& content, const char* what) {
  ArchiveContent result = content;
  if (!isForMac_) {
    return result;
  }
  if (!content.folder.empty()) {
    for (const auto& [path, item] : listFolder(content.folder)) {
      if (!item.isFolder && endsWith(path, ".jar")) {
        noteJar(item.source, what);
      }
    }
    result.folder = stage(content.folder, false, what);
  }
  for (auto& [path, source] : result.files) {
    if (endsWith(path, ".jar")) {
      noteJar(source, what);
    }
    source = isNeeded(source) ? signedCopy(source, CodeRole::other) : source;
  }
  return result;
}

std::string TargetSigning::runtime(const std::string& home) {
  return isForMac_ ? stage(home, true, "runtime") : home;
}

std::string TargetSigning::program(const std::string& path) {
  return isNeeded(path) ? signedCopy(path, CodeRole::other) : path;
}

void TargetSigning::finish(const std::string& path) {
  if (!signer_) {
    return;
  }
  signer_->signBundle(path);
  const Seal seal = readSeal(path, executableOfBundle(path));
  if (!seal.isSealed || !seal.faults.empty()) {
    throw InputError("the tool signed " + path + ", and the signature is not whole: " +
                     (seal.isSealed ? seal.faults[0] : "no files are sealed"));
  }
  if (signer_->mustNotarise()) {
    signer_->notarise(path);
  }
}

}  // namespace tools
