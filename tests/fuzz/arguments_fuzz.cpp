// The Launcher's command line: every word goes where it belongs, the class path is split and put
// together again without an empty entry, and nothing is written behind the room for it.

#include <algorithm>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "launcher/arguments.h"
#include "launcher/installation/tail_reader.h"
#include "launcher/jvm/jvm_launch.h"
#include "support/owned.h"
#include "tests/fuzz/fuzz_target.h"

static const size_t kLongest = 4096;
static const size_t kMostEntries = 600;
static const size_t kMostLogged = 20;

namespace {

struct Wanted {
  std::vector<std::string> jvmOptions;
  std::vector<std::string> arguments;
  const std::string* mainClass = nullptr;
  const std::string* classPath = nullptr;
};

// The words as the system hands them to a program, each in a block of its own size.
class CommandLine {
 public:
  explicit CommandLine(const std::vector<std::string>& words) {
    for (const std::string& word : words) {
      blocks_.emplace_back(new char[word.size() + 1]);
      words_.push_back(strcpy(blocks_.back().get(), word.c_str()));
    }
    words_.push_back(nullptr);
  }

  int count() const { return static_cast<int>(blocks_.size()); }
  char** words() { return words_.data(); }

 private:
  std::vector<std::unique_ptr<char[]>> blocks_;
  std::vector<char*> words_;
};

}  // namespace

static std::vector<std::string> partsOf(const std::string& bytes, char separator) {
  std::vector<std::string> parts(1);
  for (const char c : bytes) {
    if (c == separator) {
      parts.emplace_back();
    } else {
      parts.back() += c;
    }
  }
  return parts;
}

static Wanted wantedOf(const std::vector<std::string>& words) {
  Wanted wanted;
  for (size_t i = 1; i < words.size(); ++i) {
    if (words[i] == "-cp" || words[i] == "-classpath") {
      if (++i < words.size()) {
        wanted.classPath = &words[i];
      }
    } else if (wanted.mainClass != nullptr) {
      wanted.arguments.push_back(words[i]);
    } else if (words[i][0] == '-') {
      wanted.jvmOptions.push_back(words[i]);
    } else {
      wanted.mainClass = &words[i];
    }
  }
  return wanted;
}

static void compareList(const std::vector<std::string>& wanted, char** list, int count) {
  const size_t kept = wanted.size() < ARGUMENT_LIMIT ? wanted.size() : ARGUMENT_LIMIT;
  fuzz::require(static_cast<size_t>(count) == kept, "as many words as there is room for");
  for (size_t i = 0; i < kept; ++i) {
    fuzz::require(wanted[i] == list[i], "the words in their order");
  }
}

// The entries as split() gives them: the last part first, empty ones left out, and as many slots
// as there are separators.
static std::vector<std::string> splitParts(const std::string& text) {
  const std::vector<std::string> parts = partsOf(text, ':');
  if (parts.size() == 1) {
    return parts;
  }
  std::vector<std::string> kept;
  for (size_t i = parts.size(); i-- > 0;) {
    if (!parts[i].empty()) {
      kept.push_back(parts[i]);
    }
  }
  kept.resize(parts.size() - 1);
  return kept;
}

static void compareClassPath(const std::string* text) {
  fuzz::require((text == nullptr) == (classPathArray == nullptr), "a class path when one is given");
  if (text == nullptr) {
    fuzz::require(classPathArrayCount == 0, "no entries without one");
    return;
  }
  const std::vector<std::string> wanted = splitParts(*text);
  fuzz::require(static_cast<size_t>(classPathArrayCount) == wanted.size(), "the entries' number");
  for (size_t i = 0; i < wanted.size(); ++i) {
    const char* entry = classPathArray[i] == nullptr ? "" : classPathArray[i];
    fuzz::require(wanted[i] == entry, "the entries");
  }
}

// The option that names the entries, the list taken `times` times: those that do not fit are left
// out.
static void compareOption(size_t times) {
  std::vector<char*> entries;
  for (size_t i = 0; i < times && entries.size() < kMostEntries; ++i) {
    entries.insert(entries.end(), classPathArray, classPathArray + classPathArrayCount);
  }
  std::string wanted = entries.empty() ? "" : "-Djava.class.path=";
  const char* lead = "";
  for (const char* entry : entries) {
    if (entry != nullptr &&
        wanted.size() + strlen(lead) + strlen(entry) < size_t{CLASS_PATH_OPTION_SIZE}) {
      wanted += std::string(lead) + entry;
      lead = ":";
    }
  }
  const Block<char> option(getClassPathFor(static_cast<int>(entries.size()), entries.data()));
  fuzz::require(wanted == option.get(), "the option names the entries that fit");
}

static void forgetArguments() {
  free(classPathArray);
  clazz = nullptr;
  classPathArray = nullptr;
  classPathArrayCount = 0;
  jvmArgumentsCount = 0;
  appArgumentsCount = 0;
}

// The first byte of the input says how often the class path is taken, the others are the words,
// each ended by a zero byte.
int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size == 0 || size > kLongest) {
    return 0;
  }
  const std::string text(data + 1, data + size);
  std::vector<std::string> words = partsOf("launcher" + std::string(1, '\0') + text, '\0');
  CommandLine line(words);
  parseArguments(line.count(), line.words());
  const Wanted wanted = wantedOf(words);
  fuzz::require((clazz == nullptr) == (wanted.mainClass == nullptr) &&
                    (clazz == nullptr || *wanted.mainClass == clazz),
                "the first word that is no option is the main class");
  compareList(wanted.jvmOptions, jvmArguments, jvmArgumentsCount);
  compareList(wanted.arguments, appArguments, appArgumentsCount);
  compareClassPath(wanted.classPath);
  compareOption(data[0]);
  printTruncated("Main Class", clazz);
  for (size_t i = 0; i < std::min(words.size(), kMostLogged); ++i) {
    printTruncated("Word", words[i].c_str());
  }
  forgetArguments();
  return 0;
}
