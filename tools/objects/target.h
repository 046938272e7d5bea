#ifndef QUORVANE_TOOLS_OBJECTS_TARGET_H
#define QUORVANE_TOOLS_OBJECTS_TARGET_H

#include <optional>
#include <string>

// What a bundle is made for.

namespace tools {

// `linux` alone is a macro of GNU compilers.
enum class System { macos, linux_ };

enum class Processor { arm64, x86_64 };

struct Target {
  System system;
  Processor processor;
};

[[nodiscard]] bool operator==(const Target& one, const Target& other);
[[nodiscard]] bool operator!=(const Target& one, const Target& other);

// Returns "macos-arm64", "macos-x86_64", "linux-arm64" or "linux-x86_64".
[[nodiscard]] std::string targetText(const Target& target);

// Returns the target that `text` names, or nothing.
[[nodiscard]] std::optional<Target> targetOf(const std::string& text);

// Returns the texts of all targets, for a message: "macos-arm64, macos-x86_64, ...".
[[nodiscard]] std::string allTargetTexts();

// Returns the target that this process runs on. Throws InputError if it is none of them.
[[nodiscard]] Target thisMachine();

}  // namespace tools

#endif
