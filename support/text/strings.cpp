#include "support/text/strings.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

void* allocZeroed(size_t size) {
  void* block = calloc(size, 1);
  if (block == nullptr) {
    abort();
  }
  return block;
}

static char* allocText(size_t length) {
  return static_cast<char*>(allocZeroed(length + 1));
}

char* allocCopy(const char* s) {
  const size_t length = strlen(s);
  return static_cast<char*>(memcpy(allocText(length), s, length));
}

char* allocSubstring(const char* s, int start, int length) {
  const size_t wanted = length > 0 ? static_cast<size_t>(length) : 0;
  char* part = allocText(wanted);
  if (start < 0 || static_cast<size_t>(start) > strlen(s)) {
    return part;
  }
  return strncpy(part, s + start, wanted);
}

char* allocTempString(const char* a, const char* b) {
  const size_t first = strlen(a);
  const size_t second = strlen(b);
  char* joined = allocText(first + second);
  memcpy(joined, a, first);
  memcpy(joined + first, b, second);
  return joined;
}

int lastIndexOf(const char* s, char c) {
  for (size_t i = strlen(s); i > 0; --i) {
    if (s[i - 1] == c) {
      return static_cast<int>(i - 1);
    }
  }
  return -1;
}

int indexOf(const char* s, char c, int n) {
  int seen = 0;
  for (int i = 0; n > 0 && s[i] != 0; ++i) {
    if (s[i] == c && ++seen == n) {
      return i;
    }
  }
  return -1;
}

int integerToA(int value, char* dst) {
  constexpr size_t kLimit = 8;
  return snprintf(dst, kLimit, "%d", value);
}

char* escapeSpaces(char* s, bool escape) {
  if (!escape) {
    return s;
  }
  char* escaped = allocText(2 * strlen(s));
  char* out = escaped;
  for (const char* in = s; *in != 0; ++in) {
    if (*in == ' ') {
      *out++ = '\\';
    }
    *out++ = *in;
  }
  return escaped;
}

char* quoteSpaciousString(const char* s) {
  const size_t length = strlen(s);
  char* quoted = allocText(length + 2);
  quoted[0] = '"';
  memcpy(quoted + 1, s, length);
  quoted[length + 1] = '"';
  return quoted;
}

char* quoteStringIfNecessary(char* s) {
  return s[0] == '"' ? s : quoteSpaciousString(s);
}

bool is32Bit() {
  return false;
}

void editToWindowsSubsystem(const char*, bool) {}
