#include "launcher/jvm/host_options.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

static const char kFirstThread[] = "-XstartOnFirstThread";
static const char kDock[] = "-Xdock:";
static const char kDockName[] = "-Xdock:name=";
static const char kDockIcon[] = "-Xdock:icon=";
static const char kStack[] = "-Xss";
static const char kAppearance[] = "-Dapple.awt.application.appearance=";

static bool startsWith(const char* text, const char* start) {
  return strncmp(text, start, strlen(start)) == 0;
}

// Points `value` to what follows `name` in the option; leaves it alone for another option.
static void takeValue(const char* option, const char* name, const char** value) {
  if (startsWith(option, name)) {
    *value = option + strlen(name);
  }
}

// The power of two for the letter after a number, or -1 for any other letter.
static int shiftOf(char letter) {
  switch (letter) {
    case 0:
      return 0;
    case 'k':
    case 'K':
      return 10;
    case 'm':
    case 'M':
      return 20;
    case 'g':
    case 'G':
      return 30;
    case 't':
    case 'T':
      return 40;
    default:
      return -1;
  }
}

size_t stackSizeIn(const char* option) {
  if (!startsWith(option, kStack)) {
    return 0;
  }
  const char* digit = option + strlen(kStack);
  if (*digit < '0' || *digit > '9') {
    return 0;
  }
  size_t number = 0;
  for (; *digit >= '0' && *digit <= '9'; ++digit) {
    const size_t value = static_cast<size_t>(*digit - '0');
    number = number > (SIZE_MAX - value) / 10 ? SIZE_MAX : number * 10 + value;
  }
  const int shift = shiftOf(*digit);
  if (shift < 0 || (*digit != 0 && digit[1] != 0)) {
    return 0;
  }
  return number > SIZE_MAX >> shift ? SIZE_MAX : number << shift;
}

static void takeOption(const char* option, HostOptions* host) {
  host->startOnFirstThread = host->startOnFirstThread || strcmp(option, kFirstThread) == 0;
  takeValue(option, kDockName, &host->dockName);
  takeValue(option, kDockIcon, &host->dockIcon);
  takeValue(option, kAppearance, &host->appearance);
  if (const size_t size = stackSizeIn(option)) {
    host->stackSize = std::clamp(size, JAVA_STACK_LEAST, JAVA_STACK_MOST);
  }
}

HostOptions readHostOptions(int count, const char* const* options) {
  HostOptions host;
  for (int i = 0; i < count; ++i) {
    if (options[i] != nullptr) {
      takeOption(options[i], &host);
    }
  }
  return host;
}

bool isForHostOnly(const char* option) {
  return strcmp(option, kFirstThread) == 0 || startsWith(option, kDock);
}
