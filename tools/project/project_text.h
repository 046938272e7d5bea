#ifndef QUORVANE_TOOLS_PROJECT_PROJECT_TEXT_H
#define QUORVANE_TOOLS_PROJECT_PROJECT_TEXT_H

#include <string>
#include <vector>

// The text of a new project file.

namespace tools {

// The values in a new project file; the rest has defaults, which it shows as comments.
struct NewProject {
  std::string name;
  std::string identifier;
  std::string jar;     // either this
  std::string folder;  // or this one with its class path
  std::vector<std::string> classPath;
  std::string mainClass;
  std::string key;
};

// Returns the commented text. Throws InputError if a value is not UTF-8, which TOML cannot
// represent.
std::string projectText(const NewProject& project);

// Returns a valid application name for the file or folder `path`: "my-app-1.2.jar" gives "My App".
// Empty if nothing is left of it.
std::string suggestedName(const std::string& path);

// Returns an identifier: the main class's package, or org.example followed by the name.
std::string suggestedIdentifier(const std::string& mainClass, const std::string& name);

}  // namespace tools

#endif
