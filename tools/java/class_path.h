#ifndef QUORVANE_TOOLS_JAVA_CLASS_PATH_H
#define QUORVANE_TOOLS_JAVA_CLASS_PATH_H

#include <functional>
#include <string>
#include <vector>

#include "tools/java/jar_manifest.h"

// What a class path leads to.

namespace tools {

// Where its entries are looked up, by paths relative to the application's folder.
struct ClassPathSource {
  std::function<bool(const std::string& path)> isFile;
  std::function<bool(const std::string& path)> isFolder;
  std::function<JarFile(const std::string& path)> readJar;  // of a file; throws InputError
};

struct ClassPathReport {
  bool hasMainClass = false;
  std::string mainJar;   // the jar that has it; empty for a folder
  JarManifest manifest;  // of that jar
  // What manifests add to the class path and is missing: the jar, and the entry as it is written.
  struct Absent {
    std::string jar;
    std::string entry;
  };
  std::vector<Absent> absent;
  std::vector<std::string> jarsWithLibraries;
};

// Looks for the class `mainClass` in the folders and jars of `classPath`, and in what the manifests
// of these jars add to it. Throws InputError if a file is not a jar.
[[nodiscard]] ClassPathReport readClassPath(const std::vector<std::string>& classPath,
                                            const std::string& mainClass,
                                            const ClassPathSource& source);

// Returns the path that the entry `url` of a manifest's class path means: it is relative to the
// jar.
[[nodiscard]] std::string pathBeside(const std::string& jar, const std::string& url);

// Returns what to say of a missing entry in the manifest of `jar`, and of all of a report.
[[nodiscard]] std::string absenceText(const std::string& jar, const std::string& entry);
[[nodiscard]] std::vector<std::string> absenceTexts(const ClassPathReport& report);

}  // namespace tools

#endif
