#include "platform/window_system.h"

#import <AppKit/AppKit.h>

#include "platform/display.h"
#include "support/events/application_launch.h"

static bool createApplication() {
  keepArgumentsFromBeingOpened();
  return [NSApplication sharedApplication] != nil;
}

bool openWindowSystem() { return NSApp != nil || (isDisplayAvailable() && createApplication()); }

bool keepsEarlyEventHandlers() { return false; }
