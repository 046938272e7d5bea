#include "launcher/arguments.h"

#include <cstring>

#include "support/log/logging.h"
#include "support/text/strings.h"

static char** allocTexts(int count) {
  return static_cast<char**>(allocZeroed(static_cast<size_t>(count) * sizeof(char*)));
}

char* clazz = nullptr;
char** jvmArguments = allocTexts(ARGUMENT_LIMIT);
int jvmArgumentsCount = 0;
char** classPathArray = nullptr;
int classPathArrayCount = 0;
char** appArguments = allocTexts(ARGUMENT_LIMIT);
int appArgumentsCount = 0;
char* jreFolder = nullptr;

static bool isClassPathOption(const char* word) {
  return strcmp(word, "-cp") == 0 || strcmp(word, "-classpath") == 0;
}

// Adds `word` to a list of at most ARGUMENT_LIMIT entries.
static void append(char** list, int* count, char* word, const char* kind) {
  if (*count < ARGUMENT_LIMIT) {
    list[(*count)++] = word;
    return;
  }
  logMessage("[Launcher] ERROR - More than %d %s, ignoring %.200s\n", ARGUMENT_LIMIT, kind, word);
}

void parseArguments(int argc, char** argv) {
  for (int i = 1; i < argc; ++i) {
    char* word = argv[i];
    if (isClassPathOption(word)) {
      if (++i == argc) {
        logMessage("[Launcher] ERROR - No class path after %s\n", word);
        break;
      }
      classPathArray = split(argv[i], ':', &classPathArrayCount);
    } else if (clazz != nullptr) {
      append(appArguments, &appArgumentsCount, word, "application arguments");
    } else if (word[0] == '-') {
      append(jvmArguments, &jvmArgumentsCount, word, "JVM options");
    } else {
      clazz = word;
    }
  }
}

static int countOf(const char* text, char wanted) {
  int count = 0;
  for (; *text != 0; ++text) {
    count += *text == wanted ? 1 : 0;
  }
  return count;
}

char** split(char* text, char separator, int* count) {
  const int separators = countOf(text, separator);
  if (separators == 0) {
    char** whole = allocTexts(1);
    whole[0] = text;
    *count = 1;
    return whole;
  }
  // The first part may come after the counted ones.
  char** parts = allocTexts(separators + 1);
  char* copy = allocCopy(text);
  int stored = 0;
  for (size_t at = strlen(copy); at-- > 0;) {
    if (copy[at] == separator) {
      copy[at] = 0;
      if (copy[at + 1] != 0) {
        parts[stored++] = copy + at + 1;
      }
    }
  }
  if (copy[0] != 0) {
    parts[stored] = copy;
  }
  *count = separators;
  return parts;
}
