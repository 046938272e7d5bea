// Runs the splash's functions from a script on its command line, one word a step, arguments behind
// their step, all on the main thread, which runs no event loop unless a step does:
//
//   init  show  hide  hide-progress  cleanup  refresh
//   configure FILE     buffer POINTS   progress PERCENT   size WIDTH HEIGHT
//   run SECONDS        runs the run loop, as a download does
//   sleep SECONDS      blocks, as a child process that is waited for does
//   work SECONDS       is busy and calls keepAlive() every few milliseconds
//   mark TEXT          prints a line on standard output
//   spawn SECONDS      waits for a child process of that length
//   draw               draws the view once
//   screenshot FILE    what the X server shows
//   shoot FILE         the same, then prints one line: "shot" and NAME=VALUE pairs
//   state              prints one line: "state" and NAME=VALUE pairs
#import "support/splash/splash_state.h"
#import "support/splash/splash_view.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <thread>

#include "support/events/keep_alive.h"
#include "support/log/clock.h"
#include "support/process/spawner.h"

static const char* next(char**& word) {
  if (*word == nullptr) {
    fputs("splash_driver: a step lacks its argument\n", stderr);
    exit(2);
  }
  return *word++;
}

static void takeScreenshot(const char* file) {
  const std::string command = std::string("import -silent -window root -depth 8 '") + file + "'";
  if (system(command.c_str()) != 0) {
    fputs("splash_driver: no screenshot\n", stderr);
    exit(2);
  }
}

static int threadCount() {
  int count = 0;
  for ([[maybe_unused]] const auto& entry :
       std::filesystem::directory_iterator("/proc/self/task")) {
    ++count;
  }
  return count;
}

static void printState(const char* word) {
  const NSRect frame = win == nil ? NSZeroRect : [win frame];
  const NSRect bounds = splashView == nil ? NSZeroRect : [splashView bounds];
  printf("%s percent=%d frame=%d max=%d image=%dx%d buffer=%d window=%g,%g,%g,%g view=%gx%g ", word,
         progressPercent, currentFrame, maxFrames, image_width, image_height, getSplashBuffer(),
         frame.origin.x, frame.origin.y, frame.size.width, frame.size.height, bounds.size.width,
         bounds.size.height);
  printf("visible=%d level=%d style=%d shadow=%d redrawing=%d threads=%d\n",
         win != nil && [win isVisible], win == nil ? 0 : static_cast<int>([win level]),
         win == nil ? -1 : static_cast<int>([win styleMask]), win != nil && [win hasShadow],
         redrawThread != nil, threadCount());
  fflush(stdout);
}

static void work(double seconds) {
  const uint64_t end = systemTimeMillis() + static_cast<uint64_t>(seconds * 1000);
  while (systemTimeMillis() < end) {
    [NSThread sleepForTimeInterval:0.003];
    keepAlive();
  }
}

static void spawnSleep(const char* seconds) {
  Spawner* spawner = createSpawner();
  setSpawnerExe(spawner, "/bin/sleep");
  addSpawnerArg(spawner, seconds);
  runSpawnerAndWait(spawner);
  deleteSpawner(spawner);
}

static bool runPlainStep(const char* step) {
  if (strcmp(step, "init") == 0) {
    init();
  } else if (strcmp(step, "show") == 0) {
    showSplash();
  } else if (strcmp(step, "hide") == 0) {
    hideSplash();
  } else if (strcmp(step, "hide-progress") == 0) {
    hideProgress();
  } else if (strcmp(step, "cleanup") == 0) {
    cleanup();
  } else if (strcmp(step, "refresh") == 0) {
    refreshSplash();
  } else if (strcmp(step, "state") == 0) {
    printState("state");
  } else if (strcmp(step, "draw") == 0) {
    [splashView display];
  } else {
    return false;
  }
  return true;
}

static bool runStepWithArgument(const char* step, char**& word) {
  if (strcmp(step, "configure") == 0) {
    configureSplash(next(word));
  } else if (strcmp(step, "buffer") == 0) {
    setSplashBuffer(atoi(next(word)));
  } else if (strcmp(step, "progress") == 0) {
    setProgress(atoi(next(word)));
  } else if (strcmp(step, "size") == 0) {
    const int width = atoi(next(word));
    setFrameSize(width, atoi(next(word)));
  } else if (strcmp(step, "run") == 0) {
    [[NSRunLoop currentRunLoop]
        runUntilDate:[NSDate dateWithTimeIntervalSinceNow:atof(next(word))]];
  } else if (strcmp(step, "sleep") == 0) {
    [NSThread sleepForTimeInterval:atof(next(word))];
  } else if (strcmp(step, "work") == 0) {
    work(atof(next(word)));
  } else if (strcmp(step, "mark") == 0) {
    puts(next(word));
    fflush(stdout);
  } else if (strcmp(step, "screenshot") == 0) {
    takeScreenshot(next(word));
  } else if (strcmp(step, "shoot") == 0) {
    takeScreenshot(next(word));
    printState("shot");
  } else if (strcmp(step, "spawn") == 0) {
    spawnSleep(next(word));
  } else {
    return false;
  }
  return true;
}

int main(int, char** argv) {
  // A thread sanitizer starts a thread of its own with the first one: before any are counted.
  std::thread([] {}).join();
  for (char** word = argv + 1; *word != nullptr;) {
    NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
    const char* step = *word++;
    if (!runPlainStep(step) && !runStepWithArgument(step, word)) {
      fprintf(stderr, "splash_driver: unknown step %s\n", step);
      return 2;
    }
    [pool release];
  }
  fflush(stdout);
  _Exit(0);
}
