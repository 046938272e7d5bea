#include "tools/objects/target_fit.h"

#include <algorithm>
#include <filesystem>

#include "tools/system/ascii_case.h"
#include "tools/system/folder_tree.h"
#include "tools/system/input_error.h"
#include "tools/system/texts.h"

namespace tools {

static std::vector<Target> allTargets() {
  std::vector<Target> targets;
  for (const System system : {System::macos, System::linux_}) {
    for (const Processor processor : {Processor::arm64, Processor::x86_64}) {
      targets.push_back({system, processor});
    }
  }
  return targets;
}

bool isUsable(const ObjectFile& file) {
  return std::any_of(file.parts.begin(), file.parts.end(),
                     [](const ObjectPart& part) { return part.isProgram || part.isLibrary; });
}

std::vector<ObjectFile> objectsIn(const std::string& folder, const std::string& shown) {
  std::vector<ObjectFile> files;
  for (const auto& [path, item] : listFolder(folder)) {
    if (item.isFolder) {
      continue;
    }
    ObjectFile file{shown + "/" + path, readObjectFile(item.source)};
    if (isUsable(file)) {
      files.push_back(std::move(file));
    }
  }
  return files;
}

static bool isFor(const ObjectFile& file, const Target& target) {
  return std::any_of(file.parts.begin(), file.parts.end(),
                     [&](const ObjectPart& part) { return part.target == target; });
}

static std::string purposeOf(const ObjectFile& file) {
  std::vector<std::string> texts;
  for (const ObjectPart& part : file.parts) {
    texts.push_back(part.text);
  }
  return file.name + " is for " + joined(texts, " and ");
}

TargetFit::TargetFit(std::optional<Target> wanted) : targets_(allTargets()) {
  if (wanted) {
    targets_ = {*wanted};
    ObjectPart part;
    part.target = wanted;
    part.text = targetText(*wanted);
    narrowing_.push_back({"the bundle", {part}});
  }
}

// What the file does not go with: one that shares no target with it, else the last that left
// targets out.
std::string TargetFit::opponentOf(const ObjectFile& file) const {
  if (narrowing_.empty()) {
    return "bundles are made for " + allTargetTexts();
  }
  for (const ObjectFile& other : narrowing_) {
    const bool shares = std::any_of(file.parts.begin(), file.parts.end(), [&](const auto& part) {
      return part.target && isFor(other, *part.target);
    });
    if (!shares) {
      return purposeOf(other);
    }
  }
  return purposeOf(narrowing_.back());
}

void TargetFit::take(const ObjectFile& file) {
  for (const ObjectPart& part : file.parts) {
    SystemVersion& greatest = minimumSystems_[part.text];
    greatest = std::max(greatest, part.minimumSystem);
  }
}

void TargetFit::require(const ObjectFile& file) {
  std::vector<Target> left;
  for (const Target& target : targets_) {
    if (isFor(file, target)) {
      left.push_back(target);
    }
  }
  if (left.empty()) {
    throw InputError(purposeOf(file) + ", but " + opponentOf(file) +
                     "; a bundle needs all for one system and processor");
  }
  if (left.size() < targets_.size()) {
    narrowing_.push_back(file);
  }
  targets_ = left;
  take(file);
}

void TargetFit::requireProgram(const ObjectFile& file) {
  if (file.parts.empty()) {
    throw InputError(file.name + " is not a program: it is neither an ELF nor a Mach-O file");
  }
  for (const ObjectPart& part : file.parts) {
    if (!part.isProgram) {
      throw InputError(file.name + " is not a program, but another kind of file for " + part.text);
    }
  }
  require(file);
}

// The name of a library without what differs between systems and processors: "foo" for
// "libfoo-x86_64.so".
static std::string plainName(const std::string& path) {
  static const char* const kWords[] = {"x86_64", "amd64", "x64",   "intel", "aarch64",
                                       "arm64",  "linux", "macos", "osx",   "darwin"};
  std::string name = lowerCase(std::filesystem::path(path).filename());
  name = name.substr(0, name.find('.', 1));
  for (const char* word : kWords) {
    const size_t at = name.find(word);
    if (at != std::string::npos) {
      name.erase(at, std::string(word).size());
    }
  }
  while (!name.empty() && (name.back() == '-' || name.back() == '_')) {
    name.pop_back();
  }
  return name;
}

static bool hasCounterpart(const ObjectFile& file, const std::vector<ObjectFile>& files,
                           const Target& target) {
  return std::any_of(files.begin(), files.end(), [&](const ObjectFile& other) {
    return isFor(other, target) && plainName(other.name) == plainName(file.name);
  });
}

static bool isOfSystem(const ObjectFile& file, System system) {
  return std::any_of(file.parts.begin(), file.parts.end(), [&](const ObjectPart& part) {
    return part.target && part.target->system == system;
  });
}

// Returns a file that shows that the target lacks one of the files, or null.
static const ObjectFile* misfit(const std::vector<ObjectFile>& files, const Target& target) {
  const bool hasAny = std::any_of(files.begin(), files.end(),
                                  [&](const ObjectFile& file) { return isFor(file, target); });
  for (const ObjectFile& file : files) {
    if (!hasAny || (isOfSystem(file, target.system) && !hasCounterpart(file, files, target))) {
      return &file;
    }
  }
  return nullptr;
}

void TargetFit::requireChoice(const std::vector<ObjectFile>& files, const std::string& owner) {
  std::vector<Target> left;
  std::vector<ObjectFile> misfits;
  for (const Target& target : targets_) {
    const ObjectFile* file = misfit(files, target);
    if (file == nullptr) {
      left.push_back(target);
    } else {
      misfits.push_back(*file);
    }
  }
  if (left.empty()) {
    const ObjectFile& file = misfits[0];
    throw InputError(purposeOf(file) + ", but " + opponentOf(file) + ", and " + owner +
                     " has no such file for " + targetText(targets_[0]));
  }
  targets_ = left;
  narrowing_.insert(narrowing_.end(), misfits.begin(), misfits.end());
  for (const ObjectFile& file : files) {
    take(file);
  }
}

std::string TargetFit::text() const {
  std::vector<std::string> texts;
  for (const Target& target : targets_) {
    texts.push_back(targetText(target));
  }
  return joined(texts, " and ");
}

SystemVersion TargetFit::minimumSystem() const {
  SystemVersion greatest = 0;
  for (const Target& target : targets_) {
    const auto found = minimumSystems_.find(targetText(target));
    greatest = found == minimumSystems_.end() ? greatest : std::max(greatest, found->second);
  }
  return greatest;
}

}  // namespace tools
