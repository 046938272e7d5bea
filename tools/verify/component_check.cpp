#include "tools/verify/component_check.h"

#include <algorithm>
#include <cstring>

#include "formats/names.h"
#include "tools/apple/code_signature.h"
#include "tools/formats/archive_reader.h"
#include "tools/formats/launch_file_writer.h"
#include "tools/formats/lzma.h"
#include "tools/java/class_path.h"
#include "tools/system/ascii_case.h"
#include "tools/system/input_error.h"
#include "tools/system/texts.h"
#include "tools/system/whole_file.h"
#include "tools/verify/launch_check.h"

namespace tools {

static const char kPngStart[] = "\x89PNG\r\n\x1a\n";

void ComponentCheck::addName(const std::string& path, bool isFolder) {
  const auto [at, isNew] = names_.emplace(lowerCase(path), Name{path, isFolder});
  const Name& other = at->second;
  if (isNew || (isFolder && other.isFolder && path == other.path)) {
    return;
  }
  problem(path == other.path
              ? "two of its entries are named " + path + "; one would replace the other"
              : other.path + " and " + path +
                    " differ only in case, which most macOS volumes ignore");
}

void ComponentCheck::addFile(const std::string& path, const Place& place) {
  addName(path, false);
  files_[path] = place;
}

void ComponentCheck::read(InstallerStream* stream, int count) {
  for (int i = 0; i < count; ++i) {
    const std::string file = work_ / std::to_string(records_++);
    const std::string record = stream->next(file);
    if (record.empty()) {
      continue;
    }
    if (endsWith(record, ".p2") || endsWith(record, ".p2.l2")) {
      addArchive(record, file);
    } else {
      const auto length = static_cast<long>(readWhole(file).size());
      addFile(record, {file, 0, length});
    }
  }
}

void ComponentCheck::readArchiveFile(const std::string& path) {
  addArchive(path.substr(path.rfind('/') + 1), path);
}

void ComponentCheck::addArchive(const std::string& record, const std::string& path) {
  ++archives_;
  addName(record, false);
  try {
    std::string plain = path;
    if (endsWith(record, ".l2")) {
      addName(record.substr(0, record.size() - strlen(".l2")), false);
      plain = work_ / (std::to_string(archives_) + ".p2");
      lzmaDecompress(path, plain);
    }
    const ArchiveListing listing = readArchive(plain, record);
    for (const ArchiveEntry& entry : listing.entries) {
      if (entry.kind == EntryKind::folder) {
        addName(entry.path, true);
      } else {
        addFile(entry.path, {plain, entry.offset, entry.length});
      }
    }
    checkTrust(record, plain, listing);
  } catch (const InputError& error) {
    std::string what = error.what();
    const size_t at = what.find(path);
    problem(at == 0 ? record + what.substr(path.size()) : what);
  }
}

void ComponentCheck::checkTrust(const std::string& record, const std::string& path,
                                const ArchiveListing& listing) {
  if (!listing.isSigned) {
    ++unsignedArchives_;
    if (trust_.isRequired) {
      problem(record + " is not signed, and " + trust_.demand);
    }
    return;
  }
  if (trust_.key == nullptr) {
    problem(record + " is signed, and the Tail record has no key to verify it with");
    return;
  }
  checkSignature(path, record, listing, trust_.key);
  ++verifiedArchives_;
}

std::string ComponentCheck::bytesOf(const std::string& path) const {
  const Place& place = files_.at(path);
  const Stream stream = openInput(place.file);
  std::string bytes(static_cast<size_t>(place.length), '\0');
  fseeko(stream.get(), place.offset, SEEK_SET);
  bytes.resize(fread(bytes.data(), 1, bytes.size(), stream.get()));
  return bytes;
}

void ComponentCheck::requireFile(const std::string& path) {
  if (!holds(path)) {
    problem("the file " + path + " is missing");
  } else if (files_.at(path).length == 0) {
    problem("the file " + path + " is empty");
  }
}

bool ComponentCheck::holdsFolder(const std::string& path) const {
  const std::string inside = path + "/";
  const auto first = files_.lower_bound(inside);
  return first != files_.end() && first->first.compare(0, inside.size(), inside) == 0;
}

void ComponentCheck::checkClassPath(const LaunchFile& launch) {
  bool isComplete = true;
  for (const std::string& entry : launch.classPath) {
    if (!holds(entry) && !holdsFolder(entry)) {
      problem("its launch file has " + entry + " in the class path, which it does not contain");
      isComplete = false;
    }
  }
  if (isComplete && !launch.mainClass.empty()) {
    checkMainClass(launch);
  }
}

void ComponentCheck::checkMainClass(const LaunchFile& launch) {
  const ClassPathSource source = {
      [this](const std::string& path) { return holds(path); },
      [this](const std::string& path) { return holdsFolder(path); },
      [this](const std::string& path) { return JarFile(bytesOf(path), path); }};
  try {
    const ClassPathReport found = readClassPath(launch.classPath, launch.mainClass, source);
    if (!found.hasMainClass) {
      problem("its launch file names the main class " + launch.mainClass +
              ", which its class path does not contain");
    }
    for (const std::string& text : absenceTexts(found)) {
      report_->facts.push_back("warning: " + name_ + ": " + text);
    }
  } catch (const InputError& error) {
    problem(error.what());
  }
}

void ComponentCheck::checkLaunchFile() {
  if (!holds(LAUNCH_FILE_NAME)) {
    problem(std::string("the launch file ") + LAUNCH_FILE_NAME +
            " is missing, so nothing can start");
    return;
  }
  try {
    const std::string bytes = bytesOf(LAUNCH_FILE_NAME);
    const LaunchFile launch = decodeLaunchFile(bytes);
    if (encodeLaunchFile(launch) != bytes) {
      problem(
          "its launch file has a value in non-canonical form; write it again with "
          "'quorvane-pack launchfile'");
    }
    if (launch.mainClass.empty()) {
      problem("its launch file names no main class");
    }
    checkClassPath(launch);
  } catch (const InputError& error) {
    problem(std::string("its launch file is damaged: ") + error.what());
  }
}

void ComponentCheck::checkLaunch() {
  if (!holds(LAUNCH_FILE_NAME)) {
    return;
  }
  try {
    for (const std::string& fault : faultsOfLaunch(decodeLaunchFile(bytesOf(LAUNCH_FILE_NAME)))) {
      problem(fault);
    }
  } catch (const InputError&) {
    // checkLaunchFile() says it
  }
}

void ComponentCheck::checkVersion(const std::string& version, const char* source) {
  if (holds("version.txt") && bytesOf("version.txt") != version) {
    problem("version.txt says " + bytesOf("version.txt").substr(0, 40) + ", " + source + " says " +
            version);
  }
}

void ComponentCheck::checkIdentity(const std::string& wanted) {
  if (!holds(COMPONENT_RECORD_PATH)) {
    problem(std::string("the record ") + COMPONENT_RECORD_PATH +
            " is missing; write the site again with 'quorvane-pack build'");
  } else if (bytesOf(COMPONENT_RECORD_PATH) != wanted) {
    problem(std::string("the record ") + COMPONENT_RECORD_PATH + " says " +
            bytesOf(COMPONENT_RECORD_PATH).substr(0, 100) + ", the site says " + wanted);
  }
}

void ComponentCheck::checkSplash() {
  const std::string start(kPngStart);
  if (holds("nativesplash.png") &&
      bytesOf("nativesplash.png").compare(0, start.size(), start) != 0) {
    problem("nativesplash.png is not a PNG image");
  }
}

std::vector<ObjectPart> ComponentCheck::objectAt(const std::string& path) const {
  const Place& place = files_.at(path);
  return readObjectIn(place.file, static_cast<uint64_t>(place.offset),
                      static_cast<uint64_t>(place.length), path);
}

std::vector<ObjectFile> ComponentCheck::objects() {
  std::vector<ObjectFile> found;
  for (const auto& [path, place] : files_) {
    try {
      ObjectFile file{name_ + "/" + path, objectAt(path)};
      if (isUsable(file)) {
        found.push_back(std::move(file));
      }
    } catch (const InputError& error) {
      problem(error.what());
    }
  }
  return found;
}

void ComponentCheck::checkCode() {
  int found = 0;
  int signedOnes = 0;
  for (const auto& [path, place] : files_) {
    const Stream stream = openInput(place.file);
    char head[MACH_HEAD_SIZE] = {};
    fseeko(stream.get(), place.offset, SEEK_SET);
    const size_t wanted = std::min(sizeof head, static_cast<size_t>(place.length));
    if (!beginsMachFile({head, fread(head, 1, wanted, stream.get())})) {
      continue;
    }
    const std::optional<MachFile> code = readMachFile(bytesOf(path));
    if (!code) {
      continue;
    }
    ++found;
    signedOnes += code->isSigned() ? 1 : 0;
    for (const std::string& fault : faultsOf(*code)) {
      problem(path + " " + fault);
    }
  }
  if (found > 0) {
    report_->facts.push_back(name_ + ": " + std::to_string(signedOnes) + " of " +
                             std::to_string(found) + " programs and libraries are signed");
  }
}

void ComponentCheck::describe(const std::string& version) {
  std::string fact = name_ + " " + version + ": " + std::to_string(files_.size()) + " files";
  if (archives_ > 0 && unsignedArchives_ == archives_) {
    fact += ", not signed";
  } else if (archives_ > 0) {
    fact += verifiedArchives_ == archives_ ? ", the signature is valid" : ", not verified";
  }
  report_->facts.push_back(fact);
}

}  // namespace tools
