#include "tools/objects/target.h"

#include <sys/utsname.h>

#include <cstring>

#include "tools/system/input_error.h"

namespace tools {

namespace {
// A target, its text, and what the system calls itself and its processor.
struct Named {
  Target target;
  const char* text;
  const char* system;
  const char* machine;
};
}  // namespace

static const Named kTargets[] = {
    {{System::macos, Processor::arm64}, "macos-arm64", "Darwin", "arm64"},
    {{System::macos, Processor::x86_64}, "macos-x86_64", "Darwin", "x86_64"},
    {{System::linux_, Processor::arm64}, "linux-arm64", "Linux", "aarch64"},
    {{System::linux_, Processor::x86_64}, "linux-x86_64", "Linux", "x86_64"},
};

bool operator==(const Target& one, const Target& other) {
  return one.system == other.system && one.processor == other.processor;
}

bool operator!=(const Target& one, const Target& other) {
  return !(one == other);
}

std::string targetText(const Target& target) {
  for (const Named& named : kTargets) {
    if (named.target == target) {
      return named.text;
    }
  }
  return "";
}

std::optional<Target> targetOf(const std::string& text) {
  for (const Named& named : kTargets) {
    if (text == named.text) {
      return named.target;
    }
  }
  return std::nullopt;
}

std::string allTargetTexts() {
  std::string texts;
  for (const Named& named : kTargets) {
    texts += (texts.empty() ? "" : ", ") + std::string(named.text);
  }
  return texts;
}

Target thisMachine() {
  utsname name{};
  if (uname(&name) == 0) {
    for (const Named& named : kTargets) {
      if (strcmp(name.sysname, named.system) == 0 && strcmp(name.machine, named.machine) == 0) {
        return named.target;
      }
    }
  }
  throw InputError(std::string("this machine is ") + name.sysname + " on " + name.machine +
                   ", for which there are no executables; known are " + allTargetTexts());
}

}  // namespace tools
