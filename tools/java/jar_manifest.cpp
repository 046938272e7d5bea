#include "tools/java/jar_manifest.h"

#include <filesystem>
#include <sstream>

#include "tools/system/ascii_case.h"
#include "tools/system/input_error.h"
#include "tools/system/temporary_folder.h"
#include "tools/system/whole_file.h"

namespace fs = std::filesystem;

namespace tools {

static const char kManifest[] = "META-INF/MANIFEST.MF";

// The lines of the main section; continuation lines, which begin with a blank, are joined to the
// previous one.
static std::vector<std::string> mainSection(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) {
    if (!line.empty() && line.back() == '\r') {
      line.pop_back();
    }
    if (line.empty()) {
      break;
    }
    if (line[0] == ' ' && !lines.empty()) {
      lines.back() += line.substr(1);
    } else {
      lines.push_back(line);
    }
  }
  return lines;
}

static std::string trimmed(const std::string& text) {
  const size_t start = text.find_first_not_of(" \t");
  return start == std::string::npos ? ""
                                    : text.substr(start, text.find_last_not_of(" \t") - start + 1);
}

JarManifest parseManifest(const std::string& text) {
  JarManifest manifest;
  for (const std::string& line : mainSection(text)) {
    const size_t colon = line.find(':');
    if (colon == std::string::npos) {
      continue;
    }
    const std::string name = lowerCase(line.substr(0, colon));
    const std::string value = trimmed(line.substr(colon + 1));
    if (name == "main-class") {
      manifest.mainClass = value;
    } else if (name == "class-path") {
      std::istringstream entries(value);
      for (std::string entry; entries >> entry;) {
        manifest.classPath.push_back(entry);
      }
    }
  }
  return manifest;
}

void requireJar(const std::string& jar) {
  // The end record of a jar's directory precedes a comment of at most 65535 bytes.
  constexpr size_t kFarthestEnd = 22 + 65535;
  const std::string bytes = readWhole(jar);
  const size_t from = bytes.size() < kFarthestEnd ? 0 : bytes.size() - kFarthestEnd;
  if (bytes.compare(0, 2, "PK") != 0 || bytes.find("PK\x05\x06", from) == std::string::npos) {
    throw InputError(jar + " is not a jar, or is damaged; build it or copy it again");
  }
}

JarManifest readJarManifest(const Jdk& jdk, const std::string& jar) {
  requireJar(jar);
  const TemporaryFolder work;
  jdk.run("jar", {"--extract", "--file", fs::absolute(jar).string(), kManifest}, work / ".");
  std::error_code ignored;
  return fs::is_regular_file(work / kManifest, ignored) ? parseManifest(readWhole(work / kManifest))
                                                        : JarManifest{};
}

}  // namespace tools
