#ifndef QUORVANE_TOOLS_DELIVERY_INDEX_FILE_H
#define QUORVANE_TOOLS_DELIVERY_INDEX_FILE_H

#include <string>
#include <vector>

// The list of a build's downloads, index.json, for the page or the program that offers them.

namespace tools {

constexpr char INDEX_NAME[] = "index.json";

// One download.
struct IndexEntry {
  std::string name;  // of the file
  std::string target;
  std::string kind;  // "offline", "online" or "launcher"
  std::string version;
  std::string displayVersion;  // left out where it is empty
  long long size = 0;          // in bytes
  std::string sha256;
};

// Returns the file's bytes: JSON in UTF-8, in the order given.
std::string encodeIndex(const std::string& application, const std::vector<IndexEntry>& entries);

}  // namespace tools

#endif
