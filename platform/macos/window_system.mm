#include "platform/window_system.h"

#import <AppKit/AppKit.h>

bool openWindowSystem() { return [NSApplication sharedApplication] != nil; }
