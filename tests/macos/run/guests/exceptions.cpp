// Throws through frames of every kind that the compiler makes: with few and many saved registers,
// with a large stack, with destructors on the way; and through a function of the C library.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <string>

struct Note {
  const char* text;
  ~Note() { printf("left %s\n", text); }
};

[[gnu::noinline]] static int deepest(int number) {
  if (number > 2) {
    throw std::runtime_error("thrown at " + std::to_string(number));
  }
  return number;
}

[[gnu::noinline]] static int manyRegisters(int a, int b, int c, int d, int e) {
  const Note note{"many registers"};
  const int first = deepest(a), second = deepest(b), third = deepest(c), fourth = deepest(d);
  return first * b + second * c + third * d + fourth * e + deepest(a + b + c + d + e);
}

[[gnu::noinline]] static int largeStack(int number) {
  const Note note{"large stack"};
  volatile char room[200000];
  room[number] = 1;
  room[199999] = 2;
  return manyRegisters(1, 1, 1, 1, room[number]) + room[199999];
}

[[gnu::noinline, clang::optnone]] static int plainFrame(int number) {
  return largeStack(number) + 1;
}

static int compare(const void* a, const void* b) {
  if (*static_cast<const int*>(a) == 3) {
    throw 42;
  }
  return *static_cast<const int*>(a) - *static_cast<const int*>(b);
}

static void throwAgain() {
  try {
    plainFrame(1);
  } catch (const std::runtime_error& error) {
    printf("caught %s\n", error.what());
    throw;
  }
}

int main() {
  try {
    throwAgain();
  } catch (const std::exception& error) {
    printf("caught again %s\n", error.what());
  }
  try {
    int numbers[] = {3, 1, 2};
    qsort(numbers, 3, sizeof numbers[0], compare);
    puts("sorted");
  } catch (int number) {
    printf("caught %d\n", number);
  }
}
