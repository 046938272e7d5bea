#include "support/failure/failure_alert.h"

#import <AppKit/AppKit.h>

#include <unistd.h>

#include <atomic>

#include "platform/display.h"
#include "platform/file_viewer.h"
#include "platform/main_thread.h"
#include "platform/window_system.h"
#include "support/events/application_launch.h"
#include "support/failure/failure_texts.h"
#include "support/splash/splash.h"
#import "support/text/cocoa_text.h"

// The state of the alert that another thread has requested from the main thread.
enum AlertStage { ALERT_ASKED_FOR, ALERT_OPEN, ALERT_CLOSED, ALERT_GIVEN_UP };

static std::atomic<AlertStage> alertStage{ALERT_ASKED_FOR};

static std::string nameIn(const FailureAlert& alert) {
  if (alert.name[0] != 0) {
    return alert.name;
  }
  NSString* name = [[[NSBundle mainBundle] infoDictionary] objectForKey:@"CFBundleName"];
  return [name != nil ? name : [[NSProcessInfo processInfo] processName] UTF8String];
}

static bool makeAlertPossible() {
  if (!isDisplayAvailable() || !openWindowSystem()) {
    return false;
  }
  finishLaunching();
  return true;
}

// GNUstep has no such method, and no window before the alert is shown, and never prevents it.
@protocol TerminationDuringModal
- (void)setPreventsApplicationTerminationWhenModal:(BOOL)prevents;
@end

// A forgotten alert would keep the user from logging out.
static void letApplicationQuit(NSWindow* window) {
  if ([window respondsToSelector:@selector(setPreventsApplicationTerminationWhenModal:)]) {
    [(id<TerminationDuringModal>)window setPreventsApplicationTerminationWhenModal:NO];
  }
}

// The caller releases the alert.
static NSAlert* newAlert(const FailureAlert& about) {
  const std::string name = nameIn(about);
  NSAlert* alert = [[NSAlert alloc] init];
  [alert setMessageText:textFromUTF8(failureMessage(about.failure, name).c_str())];
  [alert
      setInformativeText:textFromUTF8(failureAdvice(about.failure, name, about.logFile).c_str())];
  [alert addButtonWithTitle:@"OK"];
  if (about.logFile[0] != 0) {
    [alert addButtonWithTitle:@"Show Log"];
  }
  return alert;
}

static void runAlert(const FailureAlert& about) {
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  if (makeAlertPossible()) {
    hideSplash();  // it floats above other windows
    [NSApp activateIgnoringOtherApps:YES];
    NSAlert* alert = newAlert(about);
    letApplicationQuit([alert window]);
    if ([alert runModal] == NSAlertSecondButtonReturn) {
      showInFileViewer(about.logFile);
    }
    [alert release];
  }
  [pool release];
}

// Shows the alert on the main thread for another one, which waits.
@interface AlertRunner : NSObject {
  const FailureAlert* alert_;
}
- (id)initWithAlert:(const FailureAlert*)alert;
- (void)run:(id)unused;
@end

@implementation AlertRunner

- (id)initWithAlert:(const FailureAlert*)alert {
  self = [super init];
  if (self != nil) {
    alert_ = alert;
  }
  return self;
}

- (void)run:(id)unused {
  (void)unused;
  AlertStage stage = ALERT_ASKED_FOR;
  if (alertStage.compare_exchange_strong(stage, ALERT_OPEN)) {
    runAlert(*alert_);
    alertStage = ALERT_CLOSED;
  }
}

@end

// Waits while the stage is `stage`, checking `tries` times, or without limit if that is 0. Returns
// whether it has changed.
static bool waitForStageAfter(AlertStage stage, int tries) {
  constexpr useconds_t kPauseMicroseconds = 20000;
  for (int i = 0; alertStage == stage; ++i) {
    if (tries != 0 && i == tries) {
      return false;
    }
    usleep(kPauseMicroseconds);
  }
  return true;
}

static void runAlertOnMainThread(const FailureAlert& about) {
  constexpr int kTenSeconds = 500;
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  AlertRunner* runner = [[AlertRunner alloc] initWithAlert:&about];
  [runner performSelectorOnMainThread:@selector(run:) withObject:nil waitUntilDone:NO];
  AlertStage stage = ALERT_ASKED_FOR;
  // A main thread that does not answer may begin at the very end of the wait.
  if (waitForStageAfter(ALERT_ASKED_FOR, kTenSeconds) ||
      !alertStage.compare_exchange_strong(stage, ALERT_GIVEN_UP)) {
    waitForStageAfter(ALERT_OPEN, 0);
  }
  [pool release];  // not the runner, which the main thread may still find
}

void showFailureAlert(const FailureAlert& alert) {
  if (isMainThread()) {
    runAlert(alert);
  } else if (NSApp != nil) {
    runAlertOnMainThread(alert);
  }
}
