#include "tests/support/swapper.h"

namespace test {

Swapper::Swapper(const std::string& one, const std::string& other)
    : thread_([this, one, other] {
        while (!ends_) {
          if (swap(one, other)) {
            ++count_;
          } else {
            std::this_thread::yield();
          }
        }
      }) {}

Swapper::~Swapper() {
  ends_ = true;
  thread_.join();
}

}  // namespace test
