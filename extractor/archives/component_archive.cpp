#include "extractor/archives/component_archive.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <string>

#include "archive/archive.h"
#include "extractor/archives/decompress_file.h"
#include "extractor/run/run.h"
#include "formats/names.h"
#include "support/files/file_kind.h"
#include "support/files/file_operations.h"
#include "support/files/paths.h"
#include "support/log/logging.h"

Descriptor openComponentArchive(const char* path) {
  Descriptor archive(open(path, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
  struct stat status {};
  if (archive.isOpen() && (fstat(archive.get(), &status) != 0 || !S_ISREG(status.st_mode))) {
    archive.reset(-1);
  }
  if (!archive.isOpen()) {
    logMessage("[Install] %s is no regular file that can be read\n", path);
  }
  return archive;
}

// Returns the number of bytes read, 0 at the end, or -1.
static ssize_t readSome(const Descriptor& file, char* buffer, size_t size) {
  ssize_t count = -1;
  do {
    count = read(file.get(), buffer, size);
  } while (count < 0 && errno == EINTR);
  return count;
}

// The tool is given a path, at which nobody else may put another file meanwhile.
static void copyArchive(const Descriptor& archive, const char* copy, const char* work) {
  Stream out(createWithoutLink(copy));
  if (out == nullptr) {
    failRun(failureOfWriting(errno, work), "[Install] Unable to create %s\n", copy);
  }
  char buffer[50000];
  ssize_t count = 0;
  while ((count = readSome(archive, buffer, sizeof buffer)) > 0) {
    if (fwrite(buffer, 1, static_cast<size_t>(count), out.get()) != static_cast<size_t>(count)) {
      failRun(failureOfWriting(errno, work), "[Install] Unable to write %s\n", copy);
    }
  }
  if (count < 0) {
    failRun(Failure::ArchiveDamaged, "[Install] Unable to read the archive\n");
  }
  if (fclose(out.release()) != 0) {
    failRun(failureOfWriting(errno, work), "[Install] Unable to write %s\n", copy);
  }
}

void removeComponentRecord(const char* folder) {
  remove(childPath(folder, COMPONENT_RECORD_PATH).c_str());
}

static std::string contentOfRecord(const char* path) {
  const Stream file(isRegularFile(path) ? fopen(path, "rb") : nullptr);
  char bytes[1024];
  const size_t count = file == nullptr ? 0 : fread(bytes, 1, sizeof bytes, file.get());
  return std::string(bytes, count);
}

static std::string wantedRecord(const ExtractorRun& run, const char* component,
                                const char* version) {
  const std::string wanted = std::string(component) + " " + version;
  return strcmp(component, UPDATER_NAME) == 0 ? wanted + UPDATER_RECORD_LINK + run.tail.appName
                                              : wanted;
}

// What it says has been verified with the rest of the archive.
static void requireComponent(const char* destination, const std::string& wanted) {
  const std::string record = childPath(destination, COMPONENT_RECORD_PATH);
  if (contentOfRecord(record.c_str()) != wanted) {
    failRun(Failure::ArchiveDamaged, "[Install] The archive does not say that it is %s\n",
            wanted.c_str());
  }
  removeComponentRecord(destination);
}

void extractComponent(const ExtractorRun& run, const Descriptor& archive, const char* work,
                      const char* unpack200, const char* destination, const char* component,
                      const char* version) {
  const std::string compressed = childPath(work, "archive.p2.l2");
  const std::string plain = childPath(work, "archive.p2");
  copyArchive(archive, compressed.c_str(), work);
  Failure failure = Failure::NotUnpacked;
  if (!decompressFile(run.lzmaPath, compressed.c_str(), plain.c_str(), &failure)) {
    failRun(failure, "[Install] The archive cannot be decompressed\n");
  }
  remove(compressed.c_str());
  extractArchive(unpack200, plain.c_str(), destination, run.trust);
  if (!isFolder(destination)) {
    failRun(Failure::SignatureRefused, "[Install] The archive was rejected\n");
  }
  requireComponent(destination, wantedRecord(run, component, version));
}
