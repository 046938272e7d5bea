// Runs the launcher's application shell without a JVM, in the launcher's order, and prints what it
// finds on standard output. Its words are a mode and, behind it, words that only the toolkit sees:
//
//   menu        prints the main menu's title, the first item's, and the submenu's items, "-" for a
//               separator
//   loop        enters the event loop, prints "running" and stays until it is ended
//   url LAST    enters the event loop, and ends with status 0 when the URL LAST has been requested,
//               which it prints
//   quit        enters the event loop and quits the application as its menu item does
//   deactivate  enters the event loop, makes the application inactive as a window of another
//               application does, and prints before and after it whether the menu is shown
//   arguments   prints the words that the toolkit believes to be the process's arguments
//   environment prints the variables of the toolkit's tuning as a child process would inherit them

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <initializer_list>
#include <thread>

#import <AppKit/AppKit.h>

#include "launcher/app_shell.h"
#include "launcher/application.h"
#include "launcher/url_events.h"
#include "launcher/url_handler.h"
#include "platform/process_end.h"

static void printMenu() {
  NSMenu* mainMenu = [NSApp mainMenu];
  NSMenu* submenu = [[mainMenu itemAtIndex:0] submenu];
  printf("%s\n%s\n", [[mainMenu title] UTF8String], [[[mainMenu itemAtIndex:0] title] UTF8String]);
  for (NSInteger i = 0; i < [submenu numberOfItems]; ++i) {
    NSMenuItem* item = static_cast<NSMenuItem*>([submenu itemAtIndex:i]);
    puts([item isSeparatorItem] ? "-" : [[item title] UTF8String]);
  }
}

static void printArguments() {
  NSArray* arguments = [[NSProcessInfo processInfo] arguments];
  for (NSUInteger i = 0; i < [arguments count]; ++i) {
    puts([[arguments objectAtIndex:i] UTF8String]);
  }
}

static void waitForUrl(const char* last) {
  const char* url = nullptr;
  while (url == nullptr || strcmp(url, last) != 0) {
    usleep(2000);
    url = [urlHandler getRequestedURL];
  }
  puts(getRequestedURL());
  usleep(500000);  // the sender gets its answer first
  endProcess(0);
}

// What happens inside the event loop, once the application has finished launching.
@interface LoopSteps : NSObject {
  SEL step;
}
@end

@implementation LoopSteps

- (id)initWithStep:(SEL)name {
  self = [super init];
  step = name;
  [[NSNotificationCenter defaultCenter] addObserver:self
                                           selector:@selector(launched:)
                                               name:NSApplicationDidFinishLaunchingNotification
                                             object:nil];
  return self;
}

- (void)launched:(NSNotification*)notification {
  (void)notification;
  [self performSelector:step withObject:nil afterDelay:0.1];
}

- (void)quit {
  [NSApp terminate:nil];
}

- (void)report {
  printf("%s, menu %s\n", [NSApp isActive] ? "active" : "inactive",
         [[[NSApp mainMenu] window] isVisible] ? "shown" : "hidden");
}

- (void)deactivate {
  if (![NSApp isActive]) {
    activateApplication();
    [self performSelector:@selector(deactivate) withObject:nil afterDelay:0.1];
    return;
  }
  [self report];
  [NSApp deactivate];
  [self report];
  endProcess(0);
}

@end

static void enterLoop(const char* mode, const char* lastUrl) {
  std::thread watcher;
  if (strcmp(mode, "url") == 0) {
    watcher = std::thread(waitForUrl, lastUrl);
  }
  SEL step = sel_registerName(mode);
  if ([LoopSteps instancesRespondToSelector:step]) {
    [[LoopSteps alloc] initWithStep:step];
  }
  activateApplication();
  puts("running");
  fflush(stdout);
  runApplication();
  endProcess(3);
}

int main(int argc, char** argv) {
  if (argc < 2) {
    return 2;
  }
  const char* mode = argv[1];
  prepareApplication(argv);
  createApplication();
  registerOSXEventListener();
  void* pool = createAutoreleasePool();
  loadOSXUINib("");
  if (strcmp(mode, "menu") == 0) {
    printMenu();
  } else if (strcmp(mode, "arguments") == 0) {
    printArguments();
  } else if (strcmp(mode, "environment") == 0) {
    for (const char* name : {"MAGICK_CODER_MODULE_PATH", "XCOMPOSEFILE"}) {
      const char* value = getenv(name);
      puts(value == nullptr ? "unset" : value);
    }
  } else {
    enterLoop(mode, argv[2]);
  }
  drainAutoreleasePool(pool);
  endProcess(0);
}
