#import <AppKit/AppKit.h>
#import <CoreGraphics/CoreGraphics.h>

CGWindowLevel CGWindowLevelForKey(CGWindowLevelKey key) {
  return key == kCGFloatingWindowLevelKey ? NSFloatingWindowLevel : NSNormalWindowLevel;
}
