#ifndef QUORVANE_TOOLS_PROJECT_SECTION_CHECK_H
#define QUORVANE_TOOLS_PROJECT_SECTION_CHECK_H

#include <string>
#include <vector>

#include "formats/tail_fields.h"
#include "tools/project/project_file.h"

namespace tools {

// Checks single values, whatever else the project says. What fails throws InputError;
// every message begins with the file, the section and the key.
class SectionCheck {
 public:
  // Keeps a reference to the project.
  explicit SectionCheck(const Project& project) : project_(project) {}

  // `what` begins with the key if it is about one; the name of an option may replace that.
  [[noreturn]] void fail(const char* section, const std::string& what) const;

  // Fails with the fault unless it is empty.
  void requireNoFault(const char* section, const std::string& fault) const;

  // The key must be given; the example is what could stand behind it.
  void require(const char* section, const char* key, const std::string& value,
               const char* example) const;

  // A name is used as a file name, as part of a folder name and as a text of Info.plist.
  void requireName(const char* section, const std::string& name) const;

  // For the key 'version'. An empty value is none.
  void requireNumber(const char* section, const std::string& value) const;

  // A text is read up to a zero byte, and up to a length.
  void requireText(const char* section, const char* key, const std::string& value,
                   int limit = TAIL_FIELD_LIMIT) const;
  void requireTexts(const char* section, const char* key,
                    const std::vector<std::string>& values) const;

  // An empty path is none.
  void requireFile(const char* section, const char* key, const std::string& path) const;
  void requireFolder(const char* section, const char* key, const std::string& path) const;

 private:
  const Project& project_;
};

}  // namespace tools

#endif
