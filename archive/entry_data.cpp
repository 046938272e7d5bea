#include "archive/entry_data.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include "archive/destination.h"
#include "support/events/keep_alive.h"
#include "support/failure/failure.h"
#include "support/files/file_operations.h"
#include "support/files/paths.h"
#include "support/log/logging.h"
#include "support/process/exit_status.h"

static const long kLongestEntry = 1L << 40;
static const size_t kChunk = 256 * 1024;

[[noreturn]] static void failToOpen(const Entry& entry, long length, int error) {
  logMessage(
      "\t[ExtractArchiveFile] *************************** Unable to extract archive file %s (%ld), "
      "unable to open file for writing\n",
      entry.path.get(), length);
  failProcess(EXIT_STATUS_FAILURE, failureOfWriting(error, entry.target));
}

[[noreturn]] static void failToRead(const Entry& entry, long done, long length) {
  logMessage(
      "\t[ExtractArchiveFile] *************************** Unable to read til end of archive file "
      "%s (%ld of %ld)\n",
      entry.path.get(), done, length);
  failProcess(EXIT_STATUS_FAILURE, Failure::ArchiveDamaged);
}

[[noreturn]] static void failToWrite(int error) {
  logMessage("\t[ExtractArchiveFile] *************************** Unable to write to target file\n");
  failProcess(EXIT_STATUS_FAILURE, failureOfWriting(error, "."));
}

static void writeAll(int file, const char* data, size_t size) {
  while (size > 0) {
    const ssize_t written = write(file, data, size);
    if (written < 0 && errno != EINTR) {
      failToWrite(errno);
    }
    const size_t done = written < 0 ? 0 : static_cast<size_t>(written);
    data += done;
    size -= done;
  }
}

static void copyData(FILE* stream, const Entry& entry, long length, int file) {
  static char chunk[kChunk];
  long done = 0;
  while (done < length) {
    const size_t wanted = std::min(kChunk, static_cast<size_t>(length - done));
    const size_t count = fread(chunk, 1, wanted, stream);
    writeAll(file, chunk, count);
    done += static_cast<long>(count);
    if (count < wanted) {
      failToRead(entry, done, length);
    }
    keepAlive();
  }
}

// Where the data end before their length, the next record is missing, which is noticed there.
static void skipData(FILE* stream, const Entry& entry, long length) {
  if (fseeko(stream, length, SEEK_CUR) != 0) {
    failToRead(entry, 0, length);
  }
}

void writeEntryData(FILE* stream, const Entry& entry, long length, const Descriptor& folder,
                    EntryData data) {
  if (length < 0 || length > kLongestEntry) {
    refuseEntry(entry.path.get(), "length is impossible");
  }
  if (entry.type == PACK200_ENTRY) {
    refuseLink(folder, pathToFile(entry.plain), entry.path.get());
  }
  Descriptor file = createFile(folder, pathToFile(entry.target), entry.path.get());
  const int error = errno;
  logMessage("\t[ExtractArchiveFile] Extracting to %s\n", entry.target);
  if (!file.isOpen()) {
    failToOpen(entry, length, error);
  }
  if (data == EntryData::Copied) {
    copyData(stream, entry, length, file.get());
  } else {
    skipData(stream, entry, length);
  }
  chmodR755(file.get(), entry.target);
  if (close(file.release()) != 0) {
    failToWrite(errno);
  }
}
