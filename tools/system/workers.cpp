#include "tools/system/workers.h"

#include <unistd.h>

#include <algorithm>
#include <system_error>
#include <utility>

#include "tools/system/interruption.h"

namespace tools {

unsigned jobsForThisMachine(uint64_t memory) {
  constexpr uint64_t kShare = 4;
  const long pages = sysconf(_SC_PHYS_PAGES);
  const long pageSize = sysconf(_SC_PAGESIZE);
  const uint64_t all = pages > 0 && pageSize > 0
                           ? static_cast<uint64_t>(pages) * static_cast<uint64_t>(pageSize)
                           : 0;
  const uint64_t fitting = all / kShare / std::max<uint64_t>(memory, 1);
  const uint64_t processors = std::thread::hardware_concurrency();  // 0 if it is not known
  return static_cast<unsigned>(std::max<uint64_t>(1, std::min(processors, fitting)));
}

Workers::Workers(unsigned count) {
  try {
    for (unsigned i = 0; count > 1 && i < count; ++i) {
      threads_.emplace_back([this] { work(); });
    }
  } catch (const std::system_error&) {
    // the threads that there are do all of the work
  }
}

Workers::~Workers() {
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    isOver_ = true;
    waiting_.clear();
  }
  changed_.notify_all();
  interruptThreads(true);
  for (std::thread& thread : threads_) {
    thread.join();
  }
  interruptThreads(false);
}

Workers::Result Workers::start(Job job) {
  const auto checked = [job = std::move(job)] {
    stopWhenInterrupted();
    return job();
  };
  if (threads_.empty()) {
    return std::async(std::launch::deferred, checked).share();
  }
  std::packaged_task<std::string()> task(checked);
  Result result = task.get_future().share();
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    waiting_.push_back(std::move(task));
  }
  changed_.notify_one();
  return result;
}

void Workers::work() {
  std::unique_lock<std::mutex> lock(mutex_);
  for (;;) {
    changed_.wait(lock, [this] { return isOver_ || !waiting_.empty(); });
    if (isOver_) {
      return;
    }
    std::packaged_task<std::string()> task = std::move(waiting_.front());
    waiting_.pop_front();
    lock.unlock();
    task();
    task = {};  // with what the job holds
    lock.lock();
  }
}

}  // namespace tools
