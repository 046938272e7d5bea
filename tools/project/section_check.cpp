#include "tools/project/section_check.h"

#include <algorithm>
#include <cctype>
#include <filesystem>

#include "tools/system/input_error.h"

namespace fs = std::filesystem;

namespace tools {

void SectionCheck::fail(const char* section, const std::string& what) const {
  const size_t keyLength = what.find(' ');
  const auto option = project_.givenBy.find(std::string(section) + "." + what.substr(0, keyLength));
  throw InputError(option == project_.givenBy.end() ? project_.file + ": [" + section + "] " + what
                                                    : option->second + what.substr(keyLength));
}

void SectionCheck::requireNoFault(const char* section, const std::string& fault) const {
  if (!fault.empty()) {
    fail(section, fault);
  }
}

void SectionCheck::require(const char* section, const char* key, const std::string& value,
                           const char* example) const {
  if (value.empty()) {
    fail(section, std::string("needs the key '") + key + "', for example " + key + " = " + example);
  }
}

void SectionCheck::requireName(const char* section, const std::string& name) const {
  constexpr size_t kLongestName = 60;
  const bool isPlain = std::none_of(name.begin(), name.end(), [](unsigned char c) {
    return c == '/' || c == '-' || c == ':' || c == '\\' || iscntrl(c) != 0;
  });
  if (!isPlain || name[0] == '.' || name[0] == ' ' || name.back() == ' ' ||
      name.size() > kLongestName) {
    fail(section,
         "name is \"" + name +
             "\"; folders are named after it, so it must have at most 60 bytes, no '/', '-', "
             "':', '\\' or control character, no '.' or blank at its start and no blank "
             "at its end");
  }
}

void SectionCheck::requireNumber(const char* section, const std::string& value) const {
  constexpr size_t kMostDigits = 18;
  if (value.size() > kMostDigits || value.find_first_not_of("0123456789") != std::string::npos) {
    fail(section, "version is \"" + value +
                      "\"; versions are compared as whole numbers, so use up to 18 digits");
  }
  if (value.size() > 1 && value[0] == '0') {
    fail(section, "version is \"" + value +
                      "\"; a whole number has no leading zero, and updates with one are refused");
  }
}

void SectionCheck::requireText(const char* section, const char* key, const std::string& value,
                               int limit) const {
  const size_t longest = static_cast<size_t>(limit) - 2;
  if (value.find('\0') != std::string::npos) {
    fail(section, std::string(key) + " contains a zero byte, which ends a text; remove it");
  }
  if (value.size() > longest) {
    fail(section, std::string(key) + " has a text of " + std::to_string(value.size()) +
                      " bytes; at most " + std::to_string(longest) + " are read");
  }
}

void SectionCheck::requireTexts(const char* section, const char* key,
                                const std::vector<std::string>& values) const {
  for (const std::string& value : values) {
    requireText(section, key, value);
  }
}

void SectionCheck::requireFile(const char* section, const char* key,
                               const std::string& path) const {
  if (!path.empty() && !fs::is_regular_file(path)) {
    fail(section, std::string(key) + " names " + path + ", which is not an existing file");
  }
}

void SectionCheck::requireFolder(const char* section, const char* key,
                                 const std::string& path) const {
  if (!path.empty() && !fs::is_directory(path)) {
    fail(section, std::string(key) + " names " + path + ", which is not an existing folder");
  }
}

}  // namespace tools
