#import <AppKit/AppKit.h>

#include <algorithm>
#include <cmath>

// For an animated change of frame the toolkit returns at once and animates later: a second change
// would start from an intermediate frame, and end in a wrong one. As on macOS this call waits for
// the animation, 0.2 seconds for a change of 150 points up to half a second, and the window has its
// new frame when it returns.

static const NSTimeInterval kSecondsPerPoint = 0.20 / 150;
static const NSTimeInterval kLongest = 0.5;
static const NSTimeInterval kStep = 0.015;

static CGFloat largestChange(NSRect from, NSRect to) {
  return std::max({std::fabs(to.origin.x - from.origin.x), std::fabs(to.origin.y - from.origin.y),
                   std::fabs(to.size.width - from.size.width),
                   std::fabs(to.size.height - from.size.height)});
}

static NSRect between(NSRect from, NSRect to, CGFloat share) {
  return NSMakeRect(from.origin.x + (to.origin.x - from.origin.x) * share,
                    from.origin.y + (to.origin.y - from.origin.y) * share,
                    from.size.width + (to.size.width - from.size.width) * share,
                    from.size.height + (to.size.height - from.size.height) * share);
}

@implementation NSWindow (QuorvaneResize)

- (NSTimeInterval)animationResizeTime:(NSRect)newFrame {
  return std::min(largestChange([self frame], newFrame) * kSecondsPerPoint, kLongest);
}

- (void)setFrame:(NSRect)frameRect display:(BOOL)display animate:(BOOL)animate {
  if (animate && [self isVisible]) {
    const NSRect old = [self frame];
    const int steps = static_cast<int>([self animationResizeTime:frameRect] / kStep);
    for (int step = 1; step < steps; ++step) {
      [self setFrame:between(old, frameRect, static_cast<CGFloat>(step) / steps) display:YES];
      [NSThread sleepForTimeInterval:kStep];
    }
  }
  [self setFrame:frameRect display:display];
}

@end
