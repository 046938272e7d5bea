#include "tools/delivery/delivery_writer.h"

#include <archive.h>
#include <archive_entry.h>
#include <sys/stat.h>

#include <filesystem>
#include <map>
#include <memory>

#include "tools/delivery/neutral_surroundings.h"
#include "tools/system/fixed_time.h"
#include "tools/system/input_error.h"
#include "tools/system/interruption.h"
#include "tools/system/whole_file.h"

namespace fs = std::filesystem;

namespace tools {

static const size_t kCopyChunk = 256 * 1024;
static const unsigned kDeliveryMode = 0644;
// The start of 1980, the earliest time that a zip can hold.
static const long kEarliestTime = 315532800;

const char* deliverySuffix(DeliveryFormat format) {
  return format == DeliveryFormat::zip ? ".zip" : ".tar.gz";
}

namespace {

struct FreeArchive {
  void operator()(archive* written) const { archive_write_free(written); }
};
struct FreeEntry {
  void operator()(archive_entry* entry) const { archive_entry_free(entry); }
};

// Writes the entries of one archive.
class DeliveryWriter {
 public:
  DeliveryWriter(const std::string& path, DeliveryFormat format)
      : path_(path), file_(path, kDeliveryMode), archive_(archive_write_new()) {
    const long time = fixedTime();
    time_ = time < 0 ? kEarliestTime : time;
    if (format == DeliveryFormat::zip) {
      check(archive_write_set_format_zip(archive_.get()));
    } else {
      check(archive_write_set_format_pax_restricted(archive_.get()));
      check(archive_write_add_filter_gzip(archive_.get()));
      // Its head would hold the time of day.
      check(archive_write_set_filter_option(archive_.get(), "gzip", "timestamp", nullptr));
    }
    check(archive_write_set_bytes_in_last_block(archive_.get(), 1));
    check(archive_write_open_FILE(archive_.get(), file_.stream()));
  }

  // Adds the file, folder or link `source` under the path `name`.
  void add(const std::string& source, const std::string& name) {
    struct stat status {};
    if (lstat(source.c_str(), &status) != 0) {
      throw InputError(source + " cannot be read; it may have changed meanwhile");
    }
    const std::unique_ptr<archive_entry, FreeEntry> entry(archive_entry_new());
    archive_entry_set_pathname(entry.get(), name.c_str());
    archive_entry_set_mtime(entry.get(), time_, 0);
    archive_entry_set_uid(entry.get(), 0);
    archive_entry_set_gid(entry.get(), 0);
    archive_entry_set_mode(entry.get(), status.st_mode & (S_IFMT | 0777u));
    archive_entry_set_size(entry.get(), S_ISREG(status.st_mode) ? status.st_size : 0);
    if (S_ISLNK(status.st_mode)) {
      archive_entry_set_symlink(entry.get(), fs::read_symlink(source).c_str());
    } else if (!S_ISREG(status.st_mode) && !S_ISDIR(status.st_mode)) {
      throw InputError(source + " is neither a file, a folder nor a link; remove it");
    }
    check(archive_write_header(archive_.get(), entry.get()));
    if (S_ISREG(status.st_mode)) {
      addBytes(source, status.st_size);
    }
  }

  void finish() {
    check(archive_write_close(archive_.get()));
    file_.finish();
  }

 private:
  void addBytes(const std::string& source, long long length) {
    const Stream input = openInput(source);
    const auto chunk = std::make_unique<char[]>(kCopyChunk);
    long long written = 0;
    while (const size_t count = fread(chunk.get(), 1, kCopyChunk, input.get())) {
      stopWhenInterrupted();
      const la_ssize_t taken = archive_write_data(archive_.get(), chunk.get(), count);
      check(taken < 0 ? static_cast<int>(taken) : ARCHIVE_OK);
      written += static_cast<long long>(count);
    }
    if (ferror(input.get()) != 0 || written != length) {
      throw InputError(source + " cannot be read to its end; it may have changed meanwhile");
    }
  }

  void check(int result) const {
    if (result != ARCHIVE_OK) {
      const char* reason = archive_error_string(archive_.get());
      throw InputError(path_ + " cannot be written: " + (reason == nullptr ? "no memory" : reason));
    }
  }

  NeutralSurroundings surroundings_;
  std::string path_;
  WholeFile file_;
  std::unique_ptr<archive, FreeArchive> archive_;
  long time_ = 0;
};

}  // namespace

// The paths of the folder and of all in it, by their names in the archive. A folder comes before
// what is in it.
static std::map<std::string, std::string> namesOf(const fs::path& folder) {
  const fs::path base = folder.parent_path();
  std::map<std::string, std::string> names = {{folder.filename(), folder}};
  for (const auto& entry : fs::recursive_directory_iterator(folder)) {
    names[entry.path().lexically_relative(base)] = entry.path();
  }
  return names;
}

void writeDelivery(const std::string& folder, const std::string& path, DeliveryFormat format) {
  try {
    const std::map<std::string, std::string> names = namesOf(fs::absolute(folder));
    DeliveryWriter writer(path, format);
    for (const auto& [name, source] : names) {
      writer.add(source, name);
    }
    writer.finish();
  } catch (const fs::filesystem_error& error) {
    throw InputError(error.path1().string() + " cannot be read: " + error.code().message());
  }
}

}  // namespace tools
