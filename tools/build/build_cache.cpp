#include "tools/build/build_cache.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>

#include "tools/delivery/file_digest.h"
#include "tools/system/input_error.h"
#include "tools/system/interruption.h"
#include "tools/system/texts.h"
#include "tools/system/whole_file.h"

namespace fs = std::filesystem;

namespace tools {

// What an entry's folder has.
static const char kContent[] = "/content";
static const char kSum[] = "/sum";
// A handful of targets of some projects.
static const size_t kMostEntries = 12;
// What is younger may be in use.
static const std::chrono::hours kInUse{1};
static const std::chrono::hours kAbandoned{24};

std::string userCacheFolder() {
  const char* place = getenv("XDG_CACHE_HOME");
  if (place != nullptr && *place == '/') {
    return std::string(place) + "/quorvane";
  }
  const char* home = getenv("HOME");
  return home != nullptr && *home == '/' ? std::string(home) + "/" QUORVANE_USER_CACHE : "";
}

// Returns why the folder cannot be used, or an empty text. It is created if missing.
static std::string faultOf(const std::string& folder) {
  std::error_code error;
  fs::create_directories(fs::path(folder).parent_path(), error);
  struct stat status {};
  if (mkdir(folder.c_str(), 0700) != 0 && errno != EEXIST) {
    return strerror(errno);
  }
  if (stat(folder.c_str(), &status) != 0 || !S_ISDIR(status.st_mode)) {
    return "it is not a folder";
  }
  if (status.st_uid != geteuid() || (status.st_mode & 022u) != 0) {
    return "others may write to it";
  }
  return access(folder.c_str(), W_OK | X_OK) == 0 ? "" : strerror(errno);
}

BuildCache::BuildCache(const std::string& folder) {
  const std::string fault = folder.empty() ? "" : faultOf(folder);
  if (fault.empty()) {
    folder_ = folder;
  } else {
    fprintf(stderr, "quorvane-pack: the cache %s is not used: %s\n", folder.c_str(), fault.c_str());
  }
}

static std::string digestOf(const std::string& content) {
  return fs::is_directory(content) ? digestOfFolder(content) : digestOfFile(content);
}

// Whether the entry is there and as it was made.
static bool isWhole(const std::string& entry) {
  try {
    return readWhole(entry + kSum) == digestOf(entry + kContent);
  } catch (const InputError&) {
    stopWhenInterrupted();
    return false;
  }
}

// Keeps what was made until the end. Returns its content's path.
std::string BuildCache::holdUnkept(std::unique_ptr<TemporaryFolder> made) {
  const std::lock_guard<std::mutex> lock(mutex_);
  unkept_.push_back(std::move(made));
  return unkept_.back()->path() + kContent;
}

std::string BuildCache::makeAnew(const Make& make) {
  auto made = std::make_unique<TemporaryFolder>();
  make(made->path() + kContent);
  return holdUnkept(std::move(made));
}

std::string BuildCache::take(const std::string& kind, const std::string& inputs, const Make& make) {
  if (folder_.empty()) {
    return makeAnew(make);
  }
  const std::string entry = folder_ + "/" + kind + "-" + digestOfText(inputs);
  if (isWhole(entry)) {
    utimensat(AT_FDCWD, entry.c_str(), nullptr, 0);
    return entry + kContent;
  }
  auto made = std::make_unique<TemporaryFolder>(folder_);
  make(made->path() + kContent);
  writeWhole(made->path() + kSum, digestOf(made->path() + kContent));
  const std::string content = keep(std::move(made), entry);
  prune(kind);
  return content;
}

// Gives what was made its name in the cache; if that fails it stays where it is until the end.
std::string BuildCache::keep(std::unique_ptr<TemporaryFolder> made, const std::string& entry) {
  std::error_code error;
  if (fs::exists(fs::symlink_status(entry))) {
    if (isWhole(entry)) {
      return entry + kContent;  // another build made it meanwhile
    }
    fs::rename(entry, made->path() + "/replaced", error);
    fs::remove_all(made->path() + "/replaced", error);
  }
  if (rename(made->path().c_str(), entry.c_str()) == 0) {
    return entry + kContent;
  }
  return holdUnkept(std::move(made));
}

// Removes the oldest entries of the kind beyond the limit, and what killed builds left.
void BuildCache::prune(const std::string& kind) const {
  using Entry = std::pair<fs::file_time_type, fs::path>;
  std::vector<Entry> entries;
  std::error_code ignored;
  const auto now = fs::file_time_type::clock::now();
  for (const auto& entry : fs::directory_iterator(folder_, ignored)) {
    const std::string name = entry.path().filename();
    const auto used = entry.last_write_time(ignored);
    if (startsWith(name, kind + "-")) {
      entries.emplace_back(used, entry.path());
    } else if (startsWith(name, "quorvane-") && now - used > kAbandoned) {
      fs::remove_all(entry.path(), ignored);
    }
  }
  std::sort(entries.begin(), entries.end());
  for (size_t i = 0; i + kMostEntries < entries.size(); ++i) {
    if (now - entries[i].first > kInUse) {
      fs::remove_all(entries[i].second, ignored);
    }
  }
}

}  // namespace tools
