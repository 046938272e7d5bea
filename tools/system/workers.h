#ifndef QUORVANE_TOOLS_SYSTEM_WORKERS_H
#define QUORVANE_TOOLS_SYSTEM_WORKERS_H

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <functional>
#include <future>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

// Work that is done side by side.

namespace tools {

// How many jobs can run side by side on this machine if each needs `memory` bytes: one for each
// processor, and no more than a quarter of the memory takes. At least 1.
unsigned jobsForThisMachine(uint64_t memory);

// Runs jobs on threads of its own, each on one, in the order in which they were started. There are
// `count`; with 1, or if the system gives none, a job runs where its result is asked for. The main
// thread's; one object at a time.
//
// What a job throws comes out where its result is asked for, so that the order of asking decides
// which of several failures a user sees.
class Workers {
 public:
  using Job = std::function<std::string()>;
  using Result = std::shared_future<std::string>;

  explicit Workers(unsigned count);
  // Drops the jobs that have not begun; those that run are interrupted (interruption.h) and waited
  // for. So a job may use what was made before the object, which lives longer.
  ~Workers();
  Workers(const Workers&) = delete;
  Workers& operator=(const Workers&) = delete;

  // Returns where the result of `job`, a path for example, will be.
  Result start(Job job);

 private:
  void work();

  std::mutex mutex_;  // of all that follows
  std::condition_variable changed_;
  std::deque<std::packaged_task<std::string()>> waiting_;
  bool isOver_ = false;
  std::vector<std::thread> threads_;
};

}  // namespace tools

#endif
