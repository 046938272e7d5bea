#include "platform/gnustep/text_guard.h"

#include <cstdlib>
#include <cstring>

// A text that was changed in place, and a copy of the original.
struct ChangedWord {
  char* word;
  char* original;
  ChangedWord* next;
};

static ChangedWord* changedWords = nullptr;

// Returns how many bytes follow the first byte of a UTF-8 character, or -1 for no first byte.
static int continuationCount(unsigned char first) {
  if (first < 0x80) {
    return 0;
  }
  if (first >= 0xC2 && first <= 0xDF) {
    return 1;
  }
  if (first >= 0xE0 && first <= 0xEF) {
    return 2;
  }
  return first >= 0xF0 && first <= 0xF4 ? 3 : -1;
}

// Returns the length of the UTF-8 character at `text`, or 0 when there is none.
static int characterLength(const unsigned char* text) {
  const int count = continuationCount(text[0]);
  for (int i = 1; i <= count; ++i) {
    if ((text[i] & 0xC0) != 0x80) {
      return 0;
    }
  }
  // Too long for its value, a surrogate, or beyond the last character.
  const bool isOverlong =
      (text[0] == 0xE0 && text[1] < 0xA0) || (text[0] == 0xF0 && text[1] < 0x90);
  const bool isOutside = (text[0] == 0xED && text[1] > 0x9F) || (text[0] == 0xF4 && text[1] > 0x8F);
  return isOverlong || isOutside ? 0 : count + 1;
}

// Returns the first byte that is not part of a UTF-8 character, or the end of the text.
static char* firstBadByte(char* text) {
  while (*text != 0) {
    const int length = characterLength(reinterpret_cast<unsigned char*>(text));
    if (length == 0) {
      return text;
    }
    text += length;
  }
  return text;
}

static void makeReadable(char* text) {
  for (char* bad = firstBadByte(text); *bad != 0; bad = firstBadByte(bad)) {
    *bad = '?';
  }
}

static void hideUnreadable(char* word) {
  if (*firstBadByte(word) == 0) {
    return;
  }
  auto* changed = static_cast<ChangedWord*>(malloc(sizeof(ChangedWord)));
  char* original = strdup(word);
  if (changed == nullptr || original == nullptr) {
    return;
  }
  *changed = {word, original, changedWords};
  changedWords = changed;
  makeReadable(word);
}

static void hideUnreadableWords(int, char** arguments, char** environment) {
  for (; *arguments != nullptr; ++arguments) {
    hideUnreadable(*arguments);
  }
  for (; *environment != nullptr; ++environment) {
    hideUnreadable(*environment);
  }
}

// Runs before the libraries' own initialisation.
using EarlyInitializer = void (*)(int, char**, char**);
__attribute__((section(".preinit_array"), used)) static EarlyInitializer hideFirst =
    hideUnreadableWords;

// Runs after it and before main().
__attribute__((constructor)) static void restoreWords() {
  while (changedWords != nullptr) {
    ChangedWord* changed = changedWords;
    changedWords = changed->next;
    memcpy(changed->word, changed->original, strlen(changed->original));
    free(changed->original);
    free(changed);
  }
}

char** allocReadableWords(char** words) {
  size_t count = 0;
  while (words[count] != nullptr) {
    ++count;
  }
  auto** copies = static_cast<char**>(calloc(count + 1, sizeof(char*)));
  if (copies == nullptr) {
    abort();
  }
  for (size_t i = 0; i < count; ++i) {
    copies[i] = strdup(words[i]);
    makeReadable(copies[i]);
  }
  return copies;
}
