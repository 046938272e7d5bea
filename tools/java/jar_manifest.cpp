#include "tools/java/jar_manifest.h"

#include <sstream>

#include "tools/system/ascii_case.h"

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

static std::vector<std::string> wordsOf(const std::string& value) {
  std::vector<std::string> words;
  std::istringstream in(value);
  for (std::string word; in >> word;) {
    words.push_back(word);
  }
  return words;
}

static void take(const std::string& name, const std::string& value, JarManifest* manifest) {
  if (name == "main-class") {
    manifest->mainClass = value;
  } else if (name == "class-path") {
    manifest->classPath = wordsOf(value);
  } else if (name == "add-exports") {
    manifest->addExports = wordsOf(value);
  } else if (name == "add-opens") {
    manifest->addOpens = wordsOf(value);
  } else if (name == "enable-native-access") {
    manifest->enableNativeAccess = value;
  } else if (name == "launcher-agent-class") {
    manifest->launcherAgentClass = value;
  } else if (name == "splashscreen-image") {
    manifest->splashScreenImage = value;
  }
}

JarManifest parseManifest(const std::string& text) {
  JarManifest manifest;
  for (const std::string& line : mainSection(text)) {
    const size_t colon = line.find(':');
    if (colon != std::string::npos) {
      take(lowerCase(line.substr(0, colon)), trimmed(line.substr(colon + 1)), &manifest);
    }
  }
  return manifest;
}

JarManifest manifestOf(const JarFile& jar) {
  return jar.holds(kManifest) ? parseManifest(jar.read(kManifest)) : JarManifest{};
}

}  // namespace tools
