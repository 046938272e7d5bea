// Runs the launcher's application shell without a JVM, in the launcher's order, and prints what it
// finds on standard output. Its words are a mode and, behind it, words that only the toolkit sees:
//
//   menu        prints the main menu's title, the first item's, and the submenu's items, "-" for a
//               separator
//   named       the same for an application that is presented under the name "Guest 100%@", and
//               behind it the process's name
//   icon FILE   prints the width of the application's icon when it is presented with FILE
//   loop        enters the event loop, prints "running" and stays until it is ended
//   url LAST    enters the event loop, and ends with status 0 when the URL LAST has been requested,
//               which it prints
//   quit        enters the event loop and quits the application as its menu item does
//   quitJava    the same with a stand-in for a JVM, whose System.exit first waits until the main
//               thread has done something for it, which prints "main thread"
//   quitTwice   the same, but System.exit prints "hangs" and does not return, and the application
//   is
//               then quit once more
//   deactivate  enters the event loop, makes the application inactive as a window of another
//               application does, and prints before and after it whether the menu is shown
//   defaults    prints the default that keeps arguments from being taken for files, as it is when
//               the application object is created
//   arguments   prints the words that the toolkit believes to be the process's arguments
//   environment prints the variables of the toolkit's tuning as a child process would inherit them

#include <unistd.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <initializer_list>
#include <thread>

#import <AppKit/AppKit.h>
#include <objc/runtime.h>

#include "launcher/shell/app_shell.h"
#include "launcher/shell/application.h"
#include "launcher/shell/java_end.h"
#include "launcher/shell/url_events.h"
#include "launcher/shell/url_handler.h"
#include "platform/process_end.h"
#include "platform/window_system.h"
#include "tests/fakes/menu_bar.h"
#include "tests/support/stand_in_vm.h"

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

typedef id (*SharedApplication)(id, SEL);

static SharedApplication toolkitSharedApplication = NULL;

static id sharedApplication(id application, SEL selector) {
  static bool isFirst = true;
  if (isFirst) {
    isFirst = false;
    NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
    NSString* value =
        [[NSUserDefaults standardUserDefaults] stringForKey:@"NSTreatUnknownArgumentsAsOpen"];
    puts(value == nil ? "unset" : [value UTF8String]);
    [pool release];
  }
  return toolkitSharedApplication(application, selector);
}

static void printDefaultAtCreation() {
  Method method = class_getClassMethod([NSApplication class], @selector(sharedApplication));
  toolkitSharedApplication = (SharedApplication)method_getImplementation(method);
  method_setImplementation(method, (IMP)sharedApplication);
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

// Far more than a test takes: the bound never ends the process here.
static const unsigned kLongEnd = 3600;

@interface MainThreadWork : NSObject
- (void)work;
- (void)quitAgain;
@end

@implementation MainThreadWork

- (void)work {
  puts("main thread");
}

- (void)quitAgain {
  [NSApp terminate:nil];
}

@end

static void onMainThread(SEL selector) {
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  MainThreadWork* work = [[[MainThreadWork alloc] init] autorelease];
  [work performSelectorOnMainThread:selector withObject:nil waitUntilDone:YES];
  [pool release];
}

static void exitAfterMainThread(int status) {
  onMainThread(@selector(work));
  endProcess(40 + status);
}

static void hang(int) {
  static std::atomic<bool> isSecond{false};
  if (isSecond.exchange(true)) {
    endProcess(5);  // Java is asked only once
  }
  puts("hangs");
  fflush(stdout);
  onMainThread(@selector(quitAgain));
  pause();
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

- (void)quitJava {
  javaEndSeconds = kLongEnd;
  setRunningJava(test::standInVm({true, exitAfterMainThread}));
  [NSApp terminate:nil];
}

- (void)quitTwice {
  javaEndSeconds = kLongEnd;
  setRunningJava(test::standInVm({true, hang}));
  [NSApp terminate:nil];
}

- (void)report {
  printf("%s, menu %s\n", [NSApp isActive] ? "active" : "inactive",
         isMenuShown() ? "shown" : "hidden");
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
  if (strcmp(mode, "defaults") == 0) {
    printDefaultAtCreation();
  }
  if (strcmp(mode, "window-defaults") == 0) {
    printDefaultAtCreation();
    return openWindowSystem() ? 0 : 3;
  }
  createApplication();
  void* pool = createAutoreleasePool();
  if (strcmp(mode, "named") == 0) {
    presentApplication({"Guest 100%@", nullptr, nullptr});
  } else if (strcmp(mode, "icon") == 0) {
    presentApplication({nullptr, argv[2], nullptr});
  }
  loadOSXUINib("");
  if (strcmp(mode, "menu") == 0) {
    printMenu();
  } else if (strcmp(mode, "named") == 0) {
    printMenu();
    puts([[[NSProcessInfo processInfo] processName] UTF8String]);
  } else if (strcmp(mode, "icon") == 0) {
    printf("%d\n", static_cast<int>([[NSApp applicationIconImage] size].width));
  } else if (strcmp(mode, "arguments") == 0) {
    printArguments();
  } else if (strcmp(mode, "environment") == 0) {
    for (const char* name : {"MAGICK_CODER_MODULE_PATH", "XCOMPOSEFILE"}) {
      const char* value = getenv(name);
      puts(value == nullptr ? "unset" : value);
    }
  } else if (strcmp(mode, "defaults") != 0) {
    enterLoop(mode, argv[2]);
  }
  drainAutoreleasePool(pool);
  endProcess(0);
}
