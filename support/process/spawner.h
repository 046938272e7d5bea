#ifndef QUORVANE_SUPPORT_PROCESS_SPAWNER_H
#define QUORVANE_SUPPORT_PROCESS_SPAWNER_H

#include <sys/types.h>

#include <memory>

// Starts other programs: collect the argument vector in a fixed table, then start the program in
// this process's environment, and optionally wait for its end. Starting with a working folder
// briefly changes the folder of the whole process, so no other thread may rely on it meanwhile. One
// thread.

// Capacity of a spawner's argument table, including the program itself.
constexpr int SPAWNER_SLOTS = 500;

// The argument table. Slot 0 is the program; the first null ends the vector. It holds the caller's
// pointers, not copies: the texts must live until the program has been started, and are the
// caller's to free.
struct Spawner {
  const char* slots[SPAWNER_SLOTS];
};

// Returns a new empty table; free it with deleteSpawner().
Spawner* createSpawner();

// Frees the table, not the texts.
void deleteSpawner(Spawner* spawner);

struct DeleteSpawner {
  void operator()(Spawner* spawner) const { deleteSpawner(spawner); }
};

// A table that is freed when its owner goes out of scope.
using OwnedSpawner = std::unique_ptr<Spawner, DeleteSpawner>;

// Appends `arg`. If all slots are taken it is refused with a logged warning.
void addSpawnerArg(Spawner* spawner, const char* arg);

// Appends `exe` as addSpawnerArg() does, whatever slot 0 contains: call it first, on an empty
// table. The program's path is used as it is; PATH is not searched.
void setSpawnerExe(Spawner* spawner, const char* exe);

// How a child process ended.
struct SpawnEnd {
  int status;       // its exit code, 0 to 255; 0 when a signal ended it; -1 when it did not start
  bool isBySignal;  // whether a signal ended it
};

// Starts the program, in `workingDir` unless that is null, and waits for its end. If it cannot be
// started, logs the error number. This process's own working folder is restored in every case. The
// table is unchanged and can be run again.
[[nodiscard]] SpawnEnd runSpawnerToItsEnd(const Spawner* spawner, const char* workingDir = nullptr);

// Logs what runSpawnerToItsEnd() logs of the program's end, for the child process `child` that has
// been waited for already and had the wait status `status`. Returns how it ended.
SpawnEnd logEarlierRun(pid_t child, int status);

// The same as runSpawnerToItsEnd(), returning the status: a program ended by a signal counts as
// successful.
int runSpawnerAndWait(const Spawner* spawner, const char* workingDir);
int runSpawnerAndWait(const Spawner* spawner);

// Waits for the end of the child process `child`, however it was started, and returns its wait
// status, or -1 if it cannot be waited for. Keeps the screen alive meanwhile.
int waitForChild(pid_t child);

// Waits up to `seconds` for the end of the child process `child`; returns whether it has ended by
// then with an exit code other than 0. The application's events are handled meanwhile.
[[nodiscard]] bool childFailsWithin(pid_t child, int seconds);

// Starts the program as runSpawnerAndWait() does and returns 0 at once; -1, with the error number
// logged, if it could not be started.
int runSpawnerAndContinue(const Spawner* spawner, const char* workingDir);
int runSpawnerAndContinue(const Spawner* spawner);

#endif
