// Shows a splash image through every state of its progress bar, about eight seconds long.
//
// Usage: splash-demo IMAGE [MARGIN [FOLDER]]
// With a FOLDER it leaves a screenshot of each state there: hidden.png, indeterminate.png, 0.png,
// 50.png and 100.png. They are taken with ImageMagick's "import", on X11 only.
#import <AppKit/AppKit.h>

#include <cstdio>
#include <cstdlib>
#include <map>
#include <string>

#include "launcher/shell/application.h"
#include "platform/process_end.h"
#include "support/process/spawner.h"
#import "support/splash/app_runner.h"
#import "support/splash/splash_state.h"

// Takes a rectangle of the screen, counted from the top left corner. The caller waits.
static bool photograph(NSRect frame, const std::string& file) {
  const CGFloat top = [[NSScreen mainScreen] frame].size.height - NSMaxY(frame);
  char crop[100];
  snprintf(crop, sizeof crop, "%dx%d+%d+%d", static_cast<int>(frame.size.width),
           static_cast<int>(frame.size.height), static_cast<int>(frame.origin.x),
           static_cast<int>(top));
  const OwnedSpawner import(createSpawner());
  setSpawnerExe(import.get(), "/usr/bin/import");
  const char* const words[] = {"-silent", "-window", "root",      "-crop",
                               crop,      "+repage", file.c_str()};
  for (const char* word : words) {
    addSpawnerArg(import.get(), word);
  }
  return runSpawnerAndWait(import.get()) == 0;
}

@interface Photographer : NSObject {
  std::string* folder;
  std::map<int, const char*>* missing;  // the states that have no picture yet
}
- (id)initWithFolder:(const char*)path;
- (void)look:(NSTimer*)timer;
@end

@implementation Photographer

- (id)initWithFolder:(const char*)path {
  self = [super init];
  folder = new std::string(path);
  missing = new std::map<int, const char*>{
      {-100, "hidden"}, {-1, "indeterminate"}, {0, "0"}, {50, "50"}, {100, "100"}};
  return self;
}

- (void)look:(NSTimer*)timer {
  (void)timer;
  const auto state = missing->find(progressPercent);
  if (state == missing->end()) {
    return;
  }
  if (!photograph([win frame], *folder + "/" + state->second + ".png")) {
    endProcess(1);
  }
  missing->erase(state);
}

@end

@interface DemoThread : NSObject
- (void)run:(id)argument;
@end

@implementation DemoThread

- (void)run:(id)argument {
  (void)argument;
  [[[AppRunner alloc] init] runThread:nil];
  endProcess(0);
}

@end

int main(int argc, char** argv) {
  if (argc < 2 || argc > 4) {
    fputs("usage: splash-demo IMAGE [MARGIN [FOLDER]]\n", stderr);
    return 2;
  }
  prepareApplication(argv);
  createApplication();
  void* pool = createAutoreleasePool();
  init();
  setSplashBuffer(argc > 2 ? atoi(argv[2]) : 0);
  configureSplash(argv[1]);
  showSplash();
  if (argc > 3) {
    [NSTimer scheduledTimerWithTimeInterval:0.005
                                     target:[[Photographer alloc] initWithFolder:argv[3]]
                                   selector:@selector(look:)
                                   userInfo:nil
                                    repeats:YES];
  }
  [NSThread detachNewThreadSelector:@selector(run:)
                           toTarget:[[DemoThread alloc] init]
                         withObject:nil];
  runApplication();
  drainAutoreleasePool(pool);
  return 0;
}
