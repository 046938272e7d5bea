#import "support/splash/redrawer.h"
#import "support/splash/splash_state.h"
#import "support/splash/splash_view.h"

#include <algorithm>

Redrawer* redrawer = nil;
NSThread* redrawThread = nil;

int progressPercent = -100;
int currentFrame = 0;
int maxFrames = 0;

static const int kHidden = -100;
static const int kIndefinite = -1;

void cancelRedrawThread() {
  [redrawThread cancel];
  [redrawThread release];
  redrawThread = nil;
}

static void startRedrawThread() {
  cancelRedrawThread();
  if (redrawer == nil) {
    redrawer = [[Redrawer alloc] init];
  }
  redrawThread = [[NSThread alloc] initWithTarget:redrawer
                                         selector:@selector(runThread:)
                                           object:splashView];
  [redrawThread start];
}

static void storeProgress(int percent) {
  progressPercent = percent;
  [splashView setNeedsDisplay:YES];
  drawSplashNow();
}

static void changeProgress(int percent) {
  if (progressPercent == kHidden) {
    setFrameSizeWithBar();
  } else if (percent == kHidden) {
    setFrameSizeWithoutBar();
  }
  if (percent == kIndefinite) {
    startRedrawThread();
  } else {
    cancelRedrawThread();
  }
  storeProgress(percent);
}

void setProgress(int percent) {
  if (!isSplashPossible()) {
    return;
  }
  // Too small a value gives an empty bar, not a hidden one.
  percent = percent < kHidden ? 0 : std::min(percent, 100);
  if (percent == progressPercent) {
    return;
  }
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  changeProgress(percent);
  [pool release];
}

void hideProgress() {
  if (!isSplashPossible()) {
    return;
  }
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  if (progressPercent != kHidden) {
    setFrameSizeWithoutBar();
  }
  storeProgress(kHidden);
  [pool release];
}
