#include "extractor/archives/decompress_ahead.h"

#include <sys/statvfs.h>
#include <sys/wait.h>  // IWYU pragma: keep, not every system repeats WIFEXITED elsewhere
#include <unistd.h>

#include <algorithm>
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
#include "support/files/file_kind.h"
#include "support/files/file_operations.h"
#include "support/files/paths.h"
#include "support/owned.h"
#include "support/process/spawner.h"
#include "support/process/start_program.h"

namespace {

// A carried archive that the tool is at work on. Its paths are empty where there is none.
struct Ahead {
  off_t place = -1;  // of its record in the stream
  long length = 0;   // of its compressed data
  pid_t child = 0;   // 0 once it has been waited for
  std::string compressed;
  std::string data;
};

// One is begun while the one before it is taken.
struct State {
  char folder[PATH_BUFFER_SIZE] = "";  // empty until it is made
  int count = 0;                       // of the archives begun, which names their files
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

// Whether both archives fit several times, decompressed and extracted: what is made early must not
// fill the disk for what is made in its turn.
static bool isRoomFor(const ExtractorRun& run, long current, long next) {
  constexpr unsigned long long kTimes = 16;
  struct statvfs disk {};
  if (statvfs(run.masterFolder, &disk) != 0) {
    return false;
  }
  const unsigned long long free = static_cast<unsigned long long>(disk.f_bavail) * disk.f_frsize;
  return free / kTimes >
         static_cast<unsigned long long>(current) + static_cast<unsigned long long>(next);
}

static bool isFolderMade(const ExtractorRun& run) {
  if (state.folder[0] == 0) {
    nameTempFolder(run.masterFolder, state.folder);
    if (createTempFolder(run.masterFolder, state.folder) != 0) {
      state.folder[0] = 0;
    }
  }
  return state.folder[0] != 0;
}

static bool copyData(FILE* stream, long length, const char* path) {
  const Stream file(createWithoutLink(path));
  char piece[64 * 1024];
  long left = length;
  size_t count = 1;
  while (file != nullptr && left > 0 && count > 0) {
    count = fread(piece, 1, std::min(sizeof piece, static_cast<size_t>(left)), stream);
    count = fwrite(piece, 1, count, file.get());
    left -= static_cast<long>(count);
    keepAlive();
  }
  return file != nullptr && left == 0 && fflush(file.get()) == 0;
}

static void stop(Ahead* ahead) {
  if (ahead->child != 0) {
    kill(ahead->child, SIGKILL);
    waitForChild(ahead->child);
  }
  if (!ahead->data.empty()) {
    remove(ahead->compressed.c_str());
    remove(ahead->data.c_str());
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
  ahead.compressed = childPath(state.folder, std::to_string(++state.count) + ".p2.l2");
  ahead.data = childPath(state.folder, std::to_string(state.count) + ".p2");
  if (!copyData(run.tailStream, head.length, ahead.compressed.c_str()) || !startTool(run, &ahead)) {
    ahead.child = 0;
    stop(&ahead);
  }
}

void beginNextAhead(ExtractorRun& run) {
  stop(&state.taken);
  state.taken = std::move(state.begun);
  state.begun = Ahead();
  if (sysconf(_SC_NPROCESSORS_ONLN) < 2 || !isExecutable(run.lzmaPath)) {
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
  stop(&state.taken);
  stop(&state.begun);
  if (state.folder[0] != 0) {
    removeTree(state.folder);
    state.folder[0] = 0;
  }
}
