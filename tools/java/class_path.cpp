#include "tools/java/class_path.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <set>

namespace fs = std::filesystem;

namespace tools {

// Entries of a manifest are URLs: "%20" is a blank.
static std::string decoded(const std::string& url) {
  std::string text;
  for (size_t i = 0; i < url.size(); ++i) {
    const std::string digits = url[i] == '%' ? url.substr(i + 1, 2) : "";
    if (digits.size() == 2 &&
        digits.find_first_not_of("0123456789abcdefABCDEF") == std::string::npos) {
      text += static_cast<char>(strtol(digits.c_str(), nullptr, 16));
      i += 2;
    } else {
      text += url[i];
    }
  }
  return text;
}

std::string pathBeside(const std::string& jar, const std::string& url) {
  std::string path = (fs::path(jar).parent_path() / decoded(url)).lexically_normal();
  while (path.size() > 1 && path.back() == '/') {
    path.pop_back();
  }
  return path;
}

namespace {

class Search {
 public:
  Search(const std::string& mainClass, const ClassPathSource& source)
      : file_(mainClass), source_(source) {
    std::replace(file_.begin(), file_.end(), '.', '/');
    file_ += ".class";
  }

  ClassPathReport run(std::vector<std::string> entries) {
    for (size_t i = 0; i < entries.size(); ++i) {
      const std::string entry = entries[i];
      if (!seen_.insert(entry).second) {
        continue;
      }
      if (source_.isFile(entry)) {
        const std::vector<std::string> more = readJarAt(entry);
        entries.insert(entries.end(), more.begin(), more.end());
      } else if (!report_.hasMainClass) {
        report_.hasMainClass = source_.isFile(entry + "/" + file_);
      }
    }
    return std::move(report_);
  }

 private:
  // Returns what the jar's manifest adds to the class path.
  std::vector<std::string> readJarAt(const std::string& path) {
    const JarFile jar = source_.readJar(path);
    const JarManifest manifest = manifestOf(jar);
    if (!report_.hasMainClass && jar.holds(file_)) {
      report_.hasMainClass = true;
      report_.mainJar = path;
      report_.manifest = manifest;
    }
    if (!jar.libraries().empty()) {
      report_.jarsWithLibraries.push_back(path);
    }
    std::vector<std::string> more;
    for (const std::string& entry : manifest.classPath) {
      const std::string beside = pathBeside(path, entry);
      if (source_.isFile(beside) || source_.isFolder(beside)) {
        more.push_back(beside);
      } else {
        report_.absent.push_back({path, entry});
      }
    }
    return more;
  }

  std::string file_;
  const ClassPathSource& source_;
  ClassPathReport report_;
  std::set<std::string> seen_;
};

}  // namespace

ClassPathReport readClassPath(const std::vector<std::string>& classPath,
                              const std::string& mainClass, const ClassPathSource& source) {
  return Search(mainClass, source).run(classPath);
}

std::string absenceText(const std::string& jar, const std::string& entry) {
  return "the manifest of " + jar + " has " + entry + " in its class path, which is missing";
}

std::vector<std::string> absenceTexts(const ClassPathReport& report) {
  std::vector<std::string> texts;
  for (const ClassPathReport::Absent& absent : report.absent) {
    texts.push_back(absenceText(absent.jar, absent.entry));
  }
  return texts;
}

}  // namespace tools
