#import "support/splash/splash_state.h"

#include <algorithm>
#include <cstdio>

static int splashBuffer = 0;

int getSplashBuffer() { return splashBuffer; }

void setSplashBuffer(int points) { splashBuffer = points; }

// Computes one side of the window. The margin comes from outside and may be any number; a side
// larger than any screen is reduced to a size that a window system still accepts.
static int sideLength(int image, int bar) {
  const long long length = image + 2LL * splashBuffer + bar;
  return static_cast<int>(std::clamp(length, 0LL, 4096LL));
}

void setFrameSize(int width, int height) {
  if (!isSplashPossible()) {
    return;
  }
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  // The frame of a null window would be undefined.
  const NSRect old = win == nil ? NSZeroRect : [win frame];
  const CGFloat x = old.origin.x - (width - old.size.width) * 0.5;
  const CGFloat y = old.origin.y - (height - old.size.height) * 0.5;
  printf("[Splash] Resizing to %d %d\n", width, height);
  fflush(stdout);
  [win setFrame:NSMakeRect(x, y, width, height) display:YES animate:YES];
  [pool release];
}

void setFrameSizeWithoutBar() {
  setFrameSize(sideLength(image_width, 0), sideLength(image_height, 0));
}

void setFrameSizeWithBar() {
  const NSSize bar = progressIndefiniteImage == nil ? NSZeroSize : [progressIndefiniteImage size];
  setFrameSize(sideLength(image_width, 0), sideLength(image_height, static_cast<int>(bar.height)));
}
