#ifndef QUORVANE_SUPPORT_OWNED_H
#define QUORVANE_SUPPORT_OWNED_H

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <memory>

// Owners of what a function allocates or opens: released when the owner goes out of scope.

struct FreeBlock {
  void operator()(void* block) const { free(block); }
};

// A heap block from malloc() and its like.
template <typename T>
using Block = std::unique_ptr<T, FreeBlock>;

struct CloseStream {
  void operator()(FILE* stream) const { fclose(stream); }
};

// An open stream.
using Stream = std::unique_ptr<FILE, CloseStream>;

// An open file descriptor, or -1.
class Descriptor {
 public:
  explicit Descriptor(int number = -1) : number_(number) {}
  Descriptor(Descriptor&& other) noexcept : number_(other.release()) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    reset(other.release());
    return *this;
  }
  ~Descriptor() { reset(-1); }

  int get() const { return number_; }
  bool isOpen() const { return number_ >= 0; }

  // Hands the descriptor over to the caller.
  int release() {
    const int number = number_;
    number_ = -1;
    return number;
  }

  // Closes the descriptor and owns `number` instead.
  void reset(int number) {
    if (isOpen()) {
      ::close(number_);
    }
    number_ = number;
  }

 private:
  int number_;
};

#endif
