#ifndef QUORVANE_TOOLS_JAVA_JAR_FILE_H
#define QUORVANE_TOOLS_JAVA_JAR_FILE_H

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace tools {

// The directory of a jar, a zip file, and single files from it.
class JarFile {
 public:
  // Reads the directory at the end of `bytes`. Throws InputError, naming the jar as `name`, if they
  // are not a jar.
  JarFile(std::string bytes, std::string name);

  [[nodiscard]] bool holds(const std::string& path) const { return entries_.count(path) > 0; }

  // The paths of the native libraries in it, by their extensions in any case, sorted.
  [[nodiscard]] std::vector<std::string> libraries() const;

  // Returns the bytes of the file `path`, which it holds. Throws InputError, naming both, if they
  // are damaged, not compressed as jars are, or more than 16 MiB.
  [[nodiscard]] std::string read(const std::string& path) const;

 private:
  // Where the bytes are, as the directory says.
  struct Entry {
    uint64_t offset;
    uint64_t packedSize;
    unsigned method;
  };

  void readDirectory();
  [[nodiscard]] std::string unpack(const Entry& entry) const;

  std::string bytes_;
  std::string name_;
  uint64_t before_ = 0;  // the bytes in front of the zip file, such as a script
  std::map<std::string, Entry> entries_;
};

// Reads the jar in the file `path`. Throws InputError.
[[nodiscard]] JarFile readJar(const std::string& path);

}  // namespace tools

#endif
