#include "extractor/archives/decompress_ahead.h"

#include <fcntl.h>
#include <sys/statvfs.h>
#include <sys/wait.h>  // IWYU pragma: keep, not every system repeats WIFEXITED elsewhere
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <utility>

#include "archive/entry.h"
#include "extractor/run/run.h"
#include "extractor/versions/folders.h"
#include "support/encoding/field_reader.h"
#include "support/events/keep_alive.h"
#include "support/events/quit_cleanup.h"
#include "support/files/file_kind.h"
#include "support/files/file_operations.h"
#include "support/files/folder_walk.h"
#include "support/files/paths.h"
#include "support/owned.h"
#include "support/process/spawner.h"
#include "support/process/start_program.h"

namespace {

// A carried archive that the tool decompresses or has decompressed.
struct Ahead {
  int number = 0;    // which its files' names begin with, 0 for none
  off_t place = -1;  // of its record in the stream
  long length = 0;   // of its compressed data
  pid_t child = 0;   // 0 once it has been waited for
  std::string compressed;
  std::string data;
};

// One is begun while the one before is extracted.
struct State {
  char folder[PATH_BUFFER_SIZE] = "";  // empty unless it is made
  bool isFolderTried = false;
  int count = 0;  // of the archives begun
  Ahead begun;
  Ahead taken;
};

// What the record at the stream's position has; its data begin at the position after the head.
struct RecordHead {
  off_t place;
  long length;  // of the data, 0 for a folder and for the empty record of a missing archive
  bool isCompressed;
};

// The stream's position, restored when this object goes.
class PlaceKeeper {
 public:
  explicit PlaceKeeper(FILE* stream) : stream_(stream), place_(ftello(stream)) {}
  ~PlaceKeeper() {
    clearerr(stream_);  // what cannot be read is noticed when it is this archive's turn
    fseeko(stream_, place_, SEEK_SET);
  }
  PlaceKeeper(const PlaceKeeper&) = delete;
  PlaceKeeper& operator=(const PlaceKeeper&) = delete;

 private:
  FILE* stream_;
  off_t place_;
};

}  // namespace

// Never destroyed: the process may end while it is in use.
static State& state = *new State;

static Block<char> readQuietly(FILE* stream, int limit) {
  return Block<char>(readStringSilently(stream, limit));
}

static bool endsInSuffix(const char* path, const char* suffix) {
  const size_t length = strlen(path);
  return length >= strlen(suffix) && strcmp(path + length - strlen(suffix), suffix) == 0;
}

static RecordHead readHead(FILE* stream) {
  RecordHead head{ftello(stream), 0, false};
  const Block<char> type = readQuietly(stream, DEFAULT_FIELD_LIMIT);
  if (type.get()[0] == 0) {
    return head;
  }
  const Block<char> path = readQuietly(stream, DEFAULT_FIELD_LIMIT);
  const long kind = atol(type.get());
  if (kind != FOLDER_ENTRY) {
    head.length = std::max(0L, atol(readQuietly(stream, NUMBER_FIELD_LIMIT).get()));
  }
  head.isCompressed = kind != PACK200_ENTRY && endsInSuffix(path.get(), ".p2.l2");
  return head;
}

// What is made early must not fill the disk for what is made in its turn. The current archive is
// there twice, decompressed and extracted, the next one decompressed: there is room for them unless
// they compress to less than a tenth.
static bool isRoomFor(const ExtractorRun& run, long current, long next) {
  constexpr unsigned long long kTimes = 32;
  struct statvfs disk {};
  if (statvfs(run.masterFolder, &disk) != 0) {
    return false;
  }
  const unsigned long long free = static_cast<unsigned long long>(disk.f_bavail) * disk.f_frsize;
  return free / kTimes >
         static_cast<unsigned long long>(current) + static_cast<unsigned long long>(next);
}

static bool isFolderMade(const ExtractorRun& run) {
  if (!state.isFolderTried) {
    state.isFolderTried = true;
    nameTempFolder(run.masterFolder, state.folder);
    if (createTempFolder(run.masterFolder, state.folder) != 0) {
      state.folder[0] = 0;
    }
  }
  return state.folder[0] != 0;
}

// Nothing that somebody else has put there is opened.
static FILE* createNewFile(const char* path) {
  Descriptor file(open(path, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600));
  FILE* stream = file.isOpen() ? fdopen(file.get(), "wb") : nullptr;
  if (stream != nullptr) {
    file.release();
  }
  return stream;
}

static bool copyData(FILE* stream, long length, const char* path) {
  Stream file(createNewFile(path));
  char piece[64 * 1024];
  long left = length;
  while (file != nullptr && left > 0) {
    const size_t wanted = std::min(sizeof piece, static_cast<size_t>(left));
    if (fread(piece, 1, wanted, stream) != wanted ||
        fwrite(piece, 1, wanted, file.get()) != wanted) {
      return false;
    }
    left -= static_cast<long>(wanted);
    keepAlive();
  }
  return file != nullptr && fclose(file.release()) == 0;
}

// The tool has ended when it is killed, and needs no waiting in which events are handled.
static void endTool(pid_t tool) {
  int status = 0;
  kill(tool, SIGKILL);
  while (waitpid(tool, &status, 0) < 0 && errno == EINTR) {
  }
}

// Removes its files, also those that a killed tool has left: all of them begin with its number.
static void removeFiles(const Ahead& ahead) {
  const std::string number = std::to_string(ahead.number) + ".";
  for (const std::string& name : allNames(openFolder(state.folder))) {
    if (name.compare(0, number.size(), number) == 0) {
      remove(childPath(state.folder, name).c_str());
    }
  }
}

static void stop(Ahead* ahead) {
  if (ahead->child != 0) {
    endTool(ahead->child);
  }
  if (ahead->number != 0) {
    removeFiles(*ahead);
  }
  *ahead = Ahead();
}

static bool startTool(const ExtractorRun& run, Ahead* ahead) {
  const char* const argv[] = {run.lzmaPath, "d", ahead->compressed.c_str(), ahead->data.c_str(),
                              nullptr};
  return startProgram(&ahead->child, run.lzmaPath, const_cast<char* const*>(argv)) == 0;
}

static void begin(ExtractorRun& run, const RecordHead& head) {
  Ahead& ahead = state.begun;
  ahead.place = head.place;
  ahead.length = head.length;
  ahead.number = ++state.count;
  const std::string name = std::to_string(ahead.number) + ".p2";
  ahead.compressed = childPath(state.folder, name + ".l2");
  ahead.data = childPath(state.folder, name);
  if (!copyData(run.tailStream, head.length, ahead.compressed.c_str()) || !startTool(run, &ahead)) {
    ahead.child = 0;
    stop(&ahead);
  }
}

void beginNextAhead(ExtractorRun& run) {
  stop(&state.taken);
  state.taken = std::move(state.begun);
  state.begun = Ahead();
  if (sysconf(_SC_NPROCESSORS_ONLN) < 2 || !isExecutable(run.lzmaPath) ||
      ftello(run.tailStream) < 0) {
    return;
  }
  const PlaceKeeper keeper(run.tailStream);
  const RecordHead current = readHead(run.tailStream);
  if (fseeko(run.tailStream, current.length, SEEK_CUR) != 0) {
    return;
  }
  const RecordHead next = readHead(run.tailStream);
  const bool isWorthIt = next.isCompressed && next.length >= SMALLEST_AHEAD;
  if (isWorthIt && isRoomFor(run, current.length, next.length) && isFolderMade(run)) {
    addQuitCleanup(endAhead);
    begin(run, next);
  }
}

static bool isMade(const Ahead& ahead, int status) {
  return status >= 0 && WIFEXITED(status) && WEXITSTATUS(status) == 0 &&
         isRegularFile(ahead.data.c_str());
}

bool takeAhead(ExtractorRun& run, ReadyData* ready) {
  Ahead& ahead = state.taken;
  if (ahead.child == 0 || ahead.place != ftello(run.tailStream)) {
    return false;
  }
  const pid_t child = ahead.child;
  const int status = waitForChild(child);
  ahead.child = 0;
  if (!isMade(ahead, status)) {
    stop(&ahead);
    return false;
  }
  *ready = {ahead.compressed.c_str(), ahead.data.c_str(), ahead.length, child, status};
  return true;
}

void endAhead() {
  removeQuitCleanup(endAhead);
  stop(&state.taken);
  stop(&state.begun);
  if (state.folder[0] != 0) {
    removeTree(state.folder);
    state.folder[0] = 0;
  }
  state.isFolderTried = false;
}
