#include "support/process/spawner.h"

#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "support/events/event_wait.h"
#include "support/events/keep_alive.h"
#include "support/log/logging.h"
#include "support/process/start_program.h"
#include "support/text/strings.h"

static_assert(sizeof(Spawner) == 4000, "the table is one block of 4000 bytes");

// Microseconds between two looks at a child while something is kept alive.
static const useconds_t kLongestPause = 10000;

namespace {

// The process's working folder, changed for as long as this object lives.
class FolderChange {
 public:
  explicit FolderChange(const char* folder) : saved_(static_cast<char*>(allocZeroed(kSize))) {
    if (getcwd(saved_, kSize) == nullptr) {
      saved_[0] = 0;
    }
    goTo(folder);
  }
  ~FolderChange() {
    goTo(saved_);
    free(saved_);
  }
  FolderChange(const FolderChange&) = delete;
  FolderChange& operator=(const FolderChange&) = delete;

 private:
  static constexpr size_t kSize = 20000;

  // If the folder cannot be entered, the process, and so the started program, stays where it is.
  static void goTo(const char* folder) {
    if (chdir(folder) != 0) {
      return;
    }
  }

  char* saved_;
};

}  // namespace

Spawner* createSpawner() {
  logMessage("[Spawner] Creating spawner\n");
  return static_cast<Spawner*>(allocZeroed(sizeof(Spawner)));
}

void deleteSpawner(Spawner* spawner) {
  free(spawner);
}

void addSpawnerArg(Spawner* spawner, const char* arg) {
  for (const char*& slot : spawner->slots) {
    if (slot == nullptr) {
      slot = arg;
      logMessage("[Spawner] Appended argument %s\n", arg);
      return;
    }
  }
  logMessage("[Spawner] WARNING: couldn't append argument %s\n", arg);
}

void setSpawnerExe(Spawner* spawner, const char* exe) {
  logMessage("[Spawner] Setting spawner exe to %s\n", exe);
  fflush(stdout);
  addSpawnerArg(spawner, exe);
}

// Starts the program in the current folder; returns 0 or the error number.
static int startHere(const Spawner* spawner, pid_t* child) {
  // A full table has no terminating null, so the vector passed on is one slot longer.
  char* arguments[SPAWNER_SLOTS + 1] = {};
  for (int i = 0; i < SPAWNER_SLOTS; ++i) {
    arguments[i] = const_cast<char*>(spawner->slots[i]);
  }
  if (arguments[0] == nullptr) {
    return ENOENT;
  }
  return startProgram(child, arguments[0], arguments);
}

// Starts the program in `workingDir`, or in the current folder if it is null. Returns 0, or -1 with
// the error number logged.
static int start(const Spawner* spawner, const char* workingDir, pid_t* child) {
  int error = 0;
  if (workingDir == nullptr) {
    error = startHere(spawner, child);
  } else {
    const FolderChange change(workingDir);
    error = startHere(spawner, child);
  }
  if (error != 0) {
    logMessage("Launch Error %d.\n", error);
    return -1;
  }
  return 0;
}

// waitpid() that is not interrupted by a signal to this process.
static pid_t waitUninterrupted(pid_t child, int* status, int options) {
  pid_t result = -1;
  do {
    result = waitpid(child, status, options);
  } while (result < 0 && errno == EINTR);
  return result;
}

int waitForChild(pid_t child) {
  int status = 0;
  pid_t result = 0;
  useconds_t pause = 500;  // short at first: most programs end soon
  while (result == 0 && hasKeepAlive()) {
    result = waitUninterrupted(child, &status, WNOHANG);
    if (result == 0) {
      keepAlive();
      usleep(pause);
      pause = std::min(pause * 2, kLongestPause);
    }
  }
  if (result == 0) {
    result = waitUninterrupted(child, &status, 0);
  }
  return result == child ? status : -1;
}

bool childFailsWithin(pid_t child, int seconds) {
  constexpr double kPauseSeconds = 0.01;
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(seconds);
  int status = 0;
  pid_t result = 0;
  while ((result = waitUninterrupted(child, &status, WNOHANG)) == 0 &&
         std::chrono::steady_clock::now() < end) {
    waitForEvent(kPauseSeconds);
  }
  return result == child && !(WIFEXITED(status) && WEXITSTATUS(status) == 0);
}

static SpawnEnd endOf(pid_t child, int status) {
  logMessage("Spawn call done %d %d.\n", static_cast<int>(child), status);
  if (!WIFEXITED(status)) {
    logMessage("[Spawner] runSpawnerAndWait returned %d\n", 0);
    return {0, true};
  }
  return {WEXITSTATUS(status), false};
}

static void logStarted() {
  logMessage("Spawn call returned %d.\n", 0);
}

SpawnEnd runSpawnerToItsEnd(const Spawner* spawner, const char* workingDir) {
  pid_t child = 0;
  if (start(spawner, workingDir, &child) != 0) {
    return {-1, false};
  }
  logStarted();
  return endOf(child, waitForChild(child));
}

SpawnEnd logEarlierRun(pid_t child, int status) {
  logStarted();
  return endOf(child, status);
}

int runSpawnerAndWait(const Spawner* spawner, const char* workingDir) {
  return runSpawnerToItsEnd(spawner, workingDir).status;
}

int runSpawnerAndWait(const Spawner* spawner) {
  return runSpawnerAndWait(spawner, nullptr);
}

int runSpawnerAndContinue(const Spawner* spawner, const char* workingDir) {
  pid_t child = 0;
  return start(spawner, workingDir, &child);
}

int runSpawnerAndContinue(const Spawner* spawner) {
  return runSpawnerAndContinue(spawner, nullptr);
}
