#include "tools/delivery/delivery_reader.h"

#include <archive.h>
#include <archive_entry.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <memory>

#include "support/owned.h"
#include "tools/delivery/neutral_surroundings.h"
#include "tools/system/input_error.h"
#include "tools/system/interruption.h"

namespace fs = std::filesystem;

namespace tools {

static const size_t kChunk = 256 * 1024;
static const long long kMostBytes = 8LL << 30;
static const long kMostEntries = 200000;

std::string faultOfEntryPath(const std::string& path) {
  if (path.empty()) {
    return "it has no name";
  }
  if (path[0] == '/') {
    return "its path is absolute";
  }
  for (const fs::path& part : fs::path(path)) {
    if (part == "..") {
      return "its path leads upwards";
    }
  }
  return "";
}

std::string faultOfLink(const std::string& path, const std::string& target) {
  if (target.empty() || target[0] == '/') {
    return "it is a link to an absolute path or to nothing";
  }
  const fs::path place = fs::path(path).parent_path();
  long depth = std::distance(place.begin(), place.end());
  bool isDescending = false;
  for (const fs::path& part : fs::path(target)) {
    if (part != "..") {
      isDescending = isDescending || (part != "." && !part.empty());
    } else if (isDescending) {
      // Through another link this may lead anywhere.
      return "it is a link that leads upwards behind a name";
    } else if (--depth < 0) {
      return "it is a link that leads outside";
    }
  }
  return "";
}

namespace {

struct FreeArchive {
  void operator()(archive* read) const { archive_read_free(read); }
};

// Unpacks the entries of one archive.
class DeliveryReader {
 public:
  DeliveryReader(std::string path, std::string folder)
      : path_(std::move(path)), folder_(std::move(folder)), archive_(archive_read_new()) {
    // By its directory at the end, which alone has modes and links.
    archive_read_support_format_zip_seekable(archive_.get());
    archive_read_support_format_tar(archive_.get());
    archive_read_support_filter_gzip(archive_.get());
    if (archive_read_open_filename(archive_.get(), path_.c_str(), kChunk) != ARCHIVE_OK) {
      fail(reason());
    }
  }

  void run(const EntryChoice& isWanted) {
    long entries = 0;
    archive_entry* entry = nullptr;
    for (int result = next(&entry); result != ARCHIVE_EOF; result = next(&entry)) {
      if (++entries > kMostEntries) {
        fail("it has more than " + std::to_string(kMostEntries) + " entries");
      }
      take(entry, isWanted);
    }
    if (entries == 0) {
      fail("it is empty");
    }
  }

 private:
  [[noreturn]] void fail(const std::string& what) const {
    throw InputError(path_ + " cannot be unpacked: " + what);
  }

  std::string reason() const {
    const char* text = archive_error_string(archive_.get());
    return text == nullptr ? "it is damaged" : text;
  }

  int next(archive_entry** entry) const {
    stopWhenInterrupted();
    const int result = archive_read_next_header(archive_.get(), entry);
    if (result != ARCHIVE_OK && result != ARCHIVE_EOF) {
      fail(reason());
    }
    return result;
  }

  void take(archive_entry* entry, const EntryChoice& isWanted) {
    const char* name = archive_entry_pathname(entry);
    const std::string given = name == nullptr ? "" : name;
    const std::string fault = faultOfEntryPath(given);
    if (!fault.empty()) {
      fail("the entry '" + given + "' is refused: " + fault);
    }
    const std::string path = plain(given);
    checkKind(entry, path);
    if (path.empty() || (isWanted && !isWanted(path))) {
      return;
    }
    makeParents(path);
    switch (archive_entry_filetype(entry)) {
      case AE_IFDIR:
        makeFolder(path, true);
        check(chmod(placeOf(path).c_str(), modeOf(entry) | 0700u), path);
        return;
      case AE_IFLNK:
        check(symlink(archive_entry_symlink(entry), placeOf(path).c_str()), path);
        return;
      default:
        makeFile(entry, path);
    }
  }

  // The path without "." components and '/' at the end.
  static std::string plain(const std::string& given) {
    std::string path = fs::path(given).lexically_normal();
    while (!path.empty() && path.back() == '/') {
      path.pop_back();
    }
    return path == "." ? "" : path;
  }

  void checkKind(archive_entry* entry, const std::string& path) const {
    std::string fault;
    if (archive_entry_hardlink(entry) != nullptr) {
      fault = "it is a hard link";
    } else if (archive_entry_filetype(entry) == AE_IFLNK) {
      const char* target = archive_entry_symlink(entry);
      fault = faultOfLink(path, target == nullptr ? "" : target);
    } else if (archive_entry_filetype(entry) != AE_IFREG &&
               archive_entry_filetype(entry) != AE_IFDIR) {
      fault = "it is neither a file, a folder nor a link";
    }
    if (!fault.empty()) {
      fail("the entry '" + path + "' is refused: " + fault);
    }
  }

  static mode_t modeOf(archive_entry* entry) { return archive_entry_perm(entry) & 0777u; }

  std::string placeOf(const std::string& path) const { return folder_ + "/" + path; }

  void check(int result, const std::string& path) const {
    if (result != 0) {
      fail("the entry '" + path + "' cannot be written: " + strerror(errno));
    }
  }

  void makeParents(const std::string& path) const {
    for (size_t at = path.find('/'); at != std::string::npos; at = path.find('/', at + 1)) {
      makeFolder(path.substr(0, at), false);
    }
  }

  // A folder may come again, or after what is in it; a link in its place is never passed.
  void makeFolder(const std::string& path, bool isEntry) const {
    struct stat status {};
    if (mkdir(placeOf(path).c_str(), 0755) == 0) {
      return;
    }
    if (errno != EEXIST || lstat(placeOf(path).c_str(), &status) != 0) {
      check(-1, path);
    }
    if (!S_ISDIR(status.st_mode)) {
      fail("the entry '" + path + "' is refused: " +
           (isEntry ? "it comes twice" : "another entry is below it, and it is no folder"));
    }
  }

  void makeFile(archive_entry* entry, const std::string& path) {
    const Descriptor file(
        open(placeOf(path).c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600));
    check(file.isOpen() ? 0 : -1, path);
    const auto chunk = std::make_unique<char[]>(kChunk);
    for (;;) {
      stopWhenInterrupted();
      const la_ssize_t count = archive_read_data(archive_.get(), chunk.get(), kChunk);
      if (count == 0) {
        break;
      }
      if (count < 0) {
        fail("the entry '" + path + "': " + reason());
      }
      bytes_ += count;
      if (bytes_ > kMostBytes) {
        fail("it unpacks to more than 8 GB");
      }
      writeAll(file.get(), chunk.get(), static_cast<size_t>(count), path);
    }
    check(fchmod(file.get(), modeOf(entry) | 0600u), path);
  }

  void writeAll(int file, const char* bytes, size_t size, const std::string& path) const {
    while (size > 0) {
      const ssize_t count = write(file, bytes, size);
      check(count <= 0 ? -1 : 0, path);
      bytes += count;
      size -= static_cast<size_t>(count);
    }
  }

  NeutralSurroundings surroundings_;
  std::string path_;
  std::string folder_;
  std::unique_ptr<archive, FreeArchive> archive_;
  long long bytes_ = 0;
};

}  // namespace

void unpackDelivery(const std::string& archive, const std::string& folder,
                    const EntryChoice& isWanted) {
  DeliveryReader(archive, folder).run(isWanted);
}

}  // namespace tools
