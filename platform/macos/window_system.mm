#include "platform/window_system.h"

#import <AppKit/AppKit.h>

bool openWindowSystem() { return [NSApplication sharedApplication] != nil; }

void answerWindowSystem() {
  // One turn of the run loop delivers what other threads have asked for and sends what is drawn.
  [[NSRunLoop currentRunLoop] runMode:NSDefaultRunLoopMode beforeDate:[NSDate distantPast]];
}
