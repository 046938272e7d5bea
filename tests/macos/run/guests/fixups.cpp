// Pointers to itself and to what it imports, in tables that the loader has to fill in.
#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <cstring>

struct Shape {
  virtual ~Shape() = default;
  virtual int corners() const = 0;
};

struct Triangle : Shape {
  int corners() const override { return 3; }
};

struct Square : Shape {
  int corners() const override { return 4; }
};

struct Entry {
  const char* name;
  int (*function)(int);
  const char* const* other;
};

static int twice(int number) {
  return 2 * number;
}

static const char* const kOther = "other";

// Pointers next to one another, at distances, and imported ones among them.
static const Entry kEntries[] = {
    {"twice", twice, &kOther},
    {"abs", abs, &kOther},
    {"twice again", twice, nullptr},
    {"toupper", toupper, &kOther},
};

using Length = size_t (*)(const char*);
static Length volatile length = strlen;

// More than a page, and zeros behind what is in the file.
static int zeros[4096];
static int filled[4096] = {1, 2, 3};

static Shape* make(const char* name) {
  if (strcmp(name, "triangle") == 0) {
    return new Triangle;
  }
  return new Square;
}

int main(int, char** argv) {
  for (const Entry& entry : kEntries) {
    printf("%s %d %s\n", entry.name, entry.function('a'),
           entry.other != nullptr ? *entry.other : "-");
  }
  printf("length %zu\n", length("four"));
  Shape* shape = make(argv[1]);
  printf("corners %d\n", shape->corners());
  delete shape;
  int sum = 0;
  for (int i = 0; i < 4096; ++i) {
    sum += zeros[i] + filled[i];
  }
  printf("sum %d\n", sum);
}
