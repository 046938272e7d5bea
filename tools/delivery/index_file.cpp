#include "tools/delivery/index_file.h"

#include <cstdio>

namespace tools {

static std::string quoted(const std::string& text) {
  std::string json = "\"";
  for (const char c : text) {
    if (c == '"' || c == '\\') {
      json += '\\';
      json += c;
    } else if (static_cast<unsigned char>(c) < ' ') {
      char escaped[8];
      snprintf(escaped, sizeof escaped, "\\u%04x", static_cast<unsigned>(c));
      json += escaped;
    } else {
      json += c;
    }
  }
  return json + "\"";
}

static std::string encodeEntry(const IndexEntry& entry) {
  std::string text = "    {\n      \"name\": " + quoted(entry.name) +
                     ",\n      \"target\": " + quoted(entry.target) +
                     ",\n      \"kind\": " + quoted(entry.kind) +
                     ",\n      \"version\": " + quoted(entry.version);
  if (!entry.displayVersion.empty()) {
    text += ",\n      \"display_version\": " + quoted(entry.displayVersion);
  }
  return text + ",\n      \"size\": " + std::to_string(entry.size) +
         ",\n      \"sha256\": " + quoted(entry.sha256) + "\n    }";
}

std::string encodeIndex(const std::string& application, const std::vector<IndexEntry>& entries) {
  std::string text = "{\n  \"application\": " + quoted(application) + ",\n  \"files\": [";
  const char* separator = "\n";
  for (const IndexEntry& entry : entries) {
    text += separator + encodeEntry(entry);
    separator = ",\n";
  }
  return text + "\n  ]\n}\n";
}

}  // namespace tools
