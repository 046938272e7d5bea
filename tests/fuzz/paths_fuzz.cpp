// The building of paths and of the names in them: a path is its parts joined or, when they do not
// fit, one at which nothing can be; texts are cut and quoted as their bytes say.

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "extractor/run/names.h"
#include "extractor/runtime/run_command.h"
#include "launcher/installation/version_folders.h"
#include "support/files/paths.h"
#include "support/owned.h"
#include "support/text/strings.h"
#include "tests/fuzz/fuzz_target.h"

static const size_t kLongest = 2048;
static const size_t kLongestPart = 3 * PATH_BUFFER_SIZE;
static const size_t kParts = 5;

// The parts are ended by zero bytes; the first byte of each says how often the others are repeated.
static std::vector<std::string> partsOf(const std::string& input) {
  std::vector<std::string> parts;
  size_t start = 0;
  while (parts.size() < kParts) {
    const size_t end = std::min(input.find('\0', start), input.size());
    const std::string text = start < end ? input.substr(start + 1, end - start - 1) : "";
    const size_t times = start < end ? static_cast<unsigned char>(input[start]) : 0;
    std::string part;
    for (size_t i = 0; i < times && part.size() < kLongestPart; ++i) {
      part += text;
    }
    parts.push_back(part);
    start = std::min(end + 1, input.size());
  }
  return parts;
}

static std::string appended(const std::string& path, const std::string& text) {
  const std::string whole = path + text;
  return whole.size() < PATH_BUFFER_SIZE ? whole : UNUSABLE_PATH;
}

static std::string joined(const std::string& path, const std::string& part) {
  const bool needsSeparator = path.empty() || path.back() != '/';
  return appended(path, (needsSeparator ? "/" : "") + part);
}

// A path buffer of exactly its size.
class PathBuffer {
 public:
  PathBuffer() : bytes_(static_cast<char*>(malloc(PATH_BUFFER_SIZE))) {}
  char* get() const { return bytes_.get(); }
  void require(const std::string& wanted) const {
    fuzz::require(wanted == bytes_.get(), "a path is its parts, or unusable");
  }

 private:
  Block<char> bytes_;
};

static void buildPaths(const std::vector<std::string>& parts) {
  const char* part[kParts];
  for (size_t i = 0; i < kParts; ++i) {
    part[i] = parts[i].c_str();
  }
  const PathBuffer path;
  std::string wanted = appended("", parts[0]);
  setPath(path.get(), part[0]);
  path.require(wanted);
  setPath(path.get(), part[0], part[1]);
  path.require(wanted = joined(wanted, parts[1]));
  setPath(path.get(), part[0], part[1], part[2]);
  path.require(wanted = joined(wanted, parts[2]));
  setPath(path.get(), part[0], part[1], part[2], part[3]);
  path.require(wanted = joined(wanted, parts[3]));
  setPath(path.get(), part[0], part[1], part[2], part[3], part[4]);
  path.require(wanted = joined(wanted, parts[4]));
  appendToPath(path.get(), part[0]);
  path.require(appended(wanted, parts[0]));
}

static void cutPaths(std::string path, std::string name) {
  const size_t slash = path.rfind('/');
  const bool hasFolder = slash != std::string::npos && slash > 0;
  const bool isUnusable = path.size() >= PATH_BUFFER_SIZE || path == UNUSABLE_PATH;
  const std::string folder = hasFolder ? path.substr(0, slash) : "";
  const Block<char> cut(getAbsoluteExeDir(path.c_str()));
  fuzz::require((isUnusable ? UNUSABLE_PATH : folder) == cut.get(),
                "the folder is what stands before the last slash");
  fuzz::require(pathToFile(path.c_str()) == path.substr(slash == std::string::npos ? 0 : slash + 1),
                "the name is what stands behind it");

  char* absolute = getAbsoluteExePath(path.data());
  const Block<char> owned(absolute == path.data() ? nullptr : absolute);
  fuzz::require(absolute[0] == '/', "an absolute path");
  fuzz::require((absolute == path.data()) == (path[0] == '/'), "itself when it is one");

  const std::string separator = path.empty() || path.back() == '/' ? "" : "/";
  const std::string wanted = path + separator + name;
  const Block<char> temporary(allocTempPath(path.data(), name.data()));
  fuzz::require(wanted == temporary.get(), "a path of any length on the heap");
}

// What a shell makes of a word between single quotes, in which only \' may stand outside of them.
static std::string unquoted(const std::string& word) {
  std::string text;
  bool isInside = false;
  for (size_t i = 0; i < word.size(); ++i) {
    if (word[i] == '\'') {
      isInside = !isInside;
    } else if (isInside) {
      text += word[i];
    } else {
      fuzz::require(word.compare(i, 2, "\\'") == 0, "nothing stands outside of the quotes");
      text += word[++i];
    }
  }
  fuzz::require(!isInside, "the quotes are closed");
  return text;
}

static void quote(const std::string& text) {
  fuzz::require(unquoted(shellQuoted(text)) == text, "the shell sees the text");
  const Block<char> quoted(quoteSpaciousString(text.c_str()));
  fuzz::require("\"" + text + "\"" == quoted.get(), "double quotes go around");
  std::string spaced;
  for (const char c : text) {
    spaced += c == ' ' ? std::string("\\ ") : std::string(1, c);
  }
  const Block<char> escaped(escapeSpaces(const_cast<char*>(text.c_str()), true));
  fuzz::require(spaced == escaped.get(), "blanks get a backslash");
}

// Finds the n-th '-' of `text`, counting from 1.
static size_t dash(const std::string& text, int n) {
  size_t at = std::string::npos;
  for (size_t from = 0; n > 0; --n, from = at + 1) {
    at = text.find('-', from);
    if (at == std::string::npos) {
      break;
    }
  }
  return at;
}

static void readFolderName(const std::string& name, const std::string& component) {
  const size_t first = dash(name, 1);
  const size_t second = dash(name, 2);
  const size_t third = dash(name, 3);
  const int difference = checkAppFolderName(name.c_str(), component.c_str());
  const long version = pickVersionFromAppFolderName(name.c_str());
  const bool isMatch =
      second != std::string::npos && name.substr(first + 1, second - first - 1) == component;
  fuzz::require((difference == 0) == isMatch, "the component stands between the first two dashes");
  fuzz::require(version == (third == std::string::npos
                                ? -1
                                : atol(name.substr(second + 1, third - second - 1).c_str())),
                "the version stands between the next two");
  const bool isRefused =
      fuzz::endsProcess([&name] { requireFolderNamePart("name", name.c_str()); });
  fuzz::require(isRefused == (name.find('/') != std::string::npos), "a name holds no slash");
}

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size > kLongest) {
    return 0;
  }
  const std::vector<std::string> parts = partsOf(std::string(data, data + size));
  buildPaths(parts);
  cutPaths(parts[0], parts[1]);
  quote(parts[2]);
  readFolderName(parts[3], parts[4]);
  return 0;
}
