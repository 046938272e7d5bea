#import "support/splash/splash_state.h"

#include <cstdio>

#include "platform/main_thread.h"
#include "platform/window_system.h"
#include "support/events/window_events.h"
#include "support/log/clock.h"

static const uint64_t kRefreshMillis = 30;

static bool isSplashUnwanted = false;

void goWithoutSplash() { isSplashUnwanted = true; }

bool isSplashPossible() {
  if (isSplashUnwanted) {
    return false;
  }
  static const bool possible = openWindowSystem();
  static bool reported = false;
  if (!possible && !reported) {
    reported = true;
    puts("[Splash] No window system can be reached, going on without a splash window");
    fflush(stdout);
  }
  return possible;
}

void drawSplashNow() {
  if (win == nil) {
    return;
  }
  [win displayIfNeeded];
  handleEvents(0);
  [win displayIfNeeded];  // what handling the events has changed
}

void refreshSplash() {
  static uint64_t last = 0;
  const uint64_t now = systemTimeMillis();
  // The clock may be set back.
  if (win == nil || (now >= last && now - last < kRefreshMillis) || !isMainThread()) {
    return;
  }
  last = now;
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  drawSplashNow();
  [pool release];
}
