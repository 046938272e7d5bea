#import "support/splash/splash_view.h"

#import "support/splash/splash_state.h"

static void drawImage(NSImage* image, long long x, long long y) {
  [image drawAtPoint:NSMakePoint(x, y)
            fromRect:NSZeroRect
           operation:NSCompositeSourceOver
            fraction:1.0];
}

// Draws `image` side by side along the bottom, from `x` up to the right edge at `width`.
static void tileImage(NSImage* image, int x, int step, int width) {
  for (; x < width; x += step) {
    drawImage(image, x, 0);
  }
}

static void drawSplashImage(int width, int height) {
  // The margin comes from outside and may be any number.
  const long long bottom = static_cast<long long>(height) - image_height - getSplashBuffer();
  drawImage(splashImage, (width - image_width) / 2, bottom);
}

static void drawIndefiniteBar(int width) {
  currentFrame = currentFrame < maxFrames ? currentFrame + 1 : 0;
  const int step = static_cast<int>([progressIndefiniteImage size].width);
  tileImage(progressIndefiniteImage, currentFrame - maxFrames, step, width);
}

// Neighbouring tiles overlap by a point, so that no gap shows between them.
static int overlappingStep(NSImage* image) { return static_cast<int>([image size].width) - 1; }

static void drawFilledBar(int width) {
  if (progressImage == nil || trackImage == nil) {
    return;
  }
  const int filled = progressPercent * width / 100;
  if (progressPercent * width >= 100) {
    tileImage(progressImage, 0, overlappingStep(progressImage), filled);
  }
  tileImage(trackImage, filled, overlappingStep(trackImage), width);
}

@implementation SplashView

- (void)drawRect:(NSRect)rectangle {
  const int width = static_cast<int>([self bounds].size.width);
  const int height = static_cast<int>([self bounds].size.height);
  [[NSColor whiteColor] set];
  NSRectFill(rectangle);
  drawSplashImage(width, height);
  if (progressPercent < -1) {
    return;
  }
  if (progressPercent == -1 && progressIndefiniteImage != nil) {
    drawIndefiniteBar(width);
  } else {
    drawFilledBar(width);
  }
}

@end
