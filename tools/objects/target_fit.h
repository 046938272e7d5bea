#ifndef QUORVANE_TOOLS_OBJECTS_TARGET_FIT_H
#define QUORVANE_TOOLS_OBJECTS_TARGET_FIT_H

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "tools/objects/object_reader.h"
#include "tools/objects/target.h"

namespace tools {

// A program or library.
struct ObjectFile {
  std::string name;  // for messages
  std::vector<ObjectPart> parts;
};

// Returns whether the file is a program or library, and not an object file or none of these.
[[nodiscard]] bool isUsable(const ObjectFile& file);

// Returns the programs and libraries in `folder`, named by `shown`, '/' and their paths in it.
// Other files, object files among them, are left out. Throws InputError if one is damaged or
// cannot be read.
[[nodiscard]] std::vector<ObjectFile> objectsIn(const std::string& folder,
                                                const std::string& shown);

// Finds out which targets files go together for. Each function throws InputError, naming the file
// and another one that it does not go with, and then leaves the file out.
class TargetFit {
 public:
  // With a target, everything must be for that one.
  explicit TargetFit(std::optional<Target> wanted = std::nullopt);

  // Takes a program that the installation executes, or any file that it cannot do without.
  void requireProgram(const ObjectFile& file);
  void require(const ObjectFile& file);

  // Takes the files of an application or updater, `owner` in messages. Files for other systems may
  // lie beside those for a target. But if there are files, one must be for the target; and what is
  // for its system and another processor needs a counterpart for the target: a file whose name,
  // without extension and words like "arm64", is the same. Targets for which this does not hold are
  // left out.
  void requireChoice(const std::vector<ObjectFile>& files, const std::string& owner);

  // The targets that are left: all, as long as nothing was taken.
  [[nodiscard]] const std::vector<Target>& targets() const { return targets_; }
  // Their texts, "macos-arm64 and macos-x86_64".
  [[nodiscard]] std::string text() const;

  // The oldest macOS that has what all Mach-O files need which are for these targets; 0 if no file
  // says it.
  [[nodiscard]] SystemVersion minimumSystem() const;

 private:
  [[nodiscard]] std::string opponentOf(const ObjectFile& file) const;
  void take(const ObjectFile& file);

  std::vector<Target> targets_;
  std::vector<ObjectFile> narrowing_;                    // the files that left targets out
  std::map<std::string, SystemVersion> minimumSystems_;  // by the targets' texts
};

}  // namespace tools

#endif
