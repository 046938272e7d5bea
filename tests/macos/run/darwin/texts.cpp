#include <strings.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <cwchar>

#include "tests/macos/run/darwin/errors.h"
#include "tests/macos/run/supply/tables.h"

// Texts and blocks of bytes. A wchar_t has 32 bits on both systems.

namespace macrun {

static void clearBytes(void* bytes, size_t size) {
  memset(bytes, 0, size);
}

static void fillPattern16(void* bytes, const void* pattern, size_t size) {
  constexpr size_t kPattern = 16;
  auto* at = static_cast<char*>(bytes);
  for (size_t done = 0; done < size; done += kPattern) {
    memcpy(at + done, pattern, std::min(kPattern, size - done));
  }
}

// Copies as much as fits, always with a zero byte; returns the length of the whole text.
static size_t copyText(char* to, const char* from, size_t size) {
  const size_t length = strlen(from);
  if (size > 0) {
    const size_t copied = std::min(length, size - 1);
    memcpy(to, from, copied);
    to[copied] = 0;
  }
  return length;
}

static size_t appendText(char* to, const char* from, size_t size) {
  const size_t before = strnlen(to, size);
  return before + copyText(to + before, from, size - before);
}

// Overloaded in C++.
using FindByte = const void* (*)(const void*, int, size_t);
using FindCharacter = const char* (*)(const char*, int);
using FindText = const char* (*)(const char*, const char*);
using FindWide = const wchar_t* (*)(const wchar_t*, wchar_t, size_t);

static constexpr Supplied kTexts[] = {
    function<clearBytes>("___bzero"),
    function<clearBytes>("_bzero"),
    function<static_cast<FindByte>(memchr)>("_memchr"),
    function<memcmp>("_memcmp"),
    function<memcpy>("_memcpy"),
    function<memmem>("_memmem"),
    function<memmove>("_memmove"),
    function<memset>("_memset"),
    function<fillPattern16>("_memset_pattern16"),
    function<strcasecmp>("_strcasecmp"),
    function<strcat>("_strcat"),
    function<static_cast<FindCharacter>(strchr)>("_strchr"),
    function<strcmp>("_strcmp"),
    function<strcpy>("_strcpy"),
    function<strcspn>("_strcspn"),
    function<strdup>("_strdup"),
    function<appendText>("_strlcat"),
    function<copyText>("_strlcpy"),
    function<strlen>("_strlen"),
    function<strncasecmp>("_strncasecmp"),
    function<strncat>("_strncat"),
    function<strncmp>("_strncmp"),
    function<strncpy>("_strncpy"),
    function<strndup>("_strndup"),
    function<strnlen>("_strnlen"),
    function<static_cast<FindText>(strpbrk)>("_strpbrk"),
    function<static_cast<FindCharacter>(strrchr)>("_strrchr"),
    function<strsep>("_strsep"),
    function<strspn>("_strspn"),
    function<static_cast<FindText>(strstr)>("_strstr"),
    function<strtok_r>("_strtok_r"),
    function<wcslen>("_wcslen"),
    function<static_cast<FindWide>(wmemchr)>("_wmemchr"),
    function<wmemcmp>("_wmemcmp"),
};
const SupplyTable kTextTable = tableOf(kTexts);

}  // namespace macrun
