#ifndef QUORVANE_TESTS_SUPPORT_SWAPPER_H
#define QUORVANE_TESTS_SUPPORT_SWAPPER_H

#include <atomic>
#include <string>
#include <thread>

namespace test {

// Lets what is at two paths change places in one step. Returns whether it did.
bool swap(const std::string& one, const std::string& other);

// Another account that has the right to write in a folder: while one of these lives, what is at
// `one` and at `other` changes places again and again.
class Swapper {
 public:
  Swapper(const std::string& one, const std::string& other);
  ~Swapper();
  Swapper(const Swapper&) = delete;
  Swapper& operator=(const Swapper&) = delete;

  // How often they have changed places.
  long count() const { return count_; }

 private:
  std::atomic<bool> ends_{false};
  std::atomic<long> count_{0};
  std::thread thread_;
};

}  // namespace test

#endif
