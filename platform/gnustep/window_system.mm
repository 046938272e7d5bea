#include "platform/window_system.h"

#import <AppKit/AppKit.h>

#include "platform/display.h"
#import "platform/gnustep/create_application.h"
#include "platform/gnustep/quiet_start.h"
#include "platform/toolkit.h"
#include "support/events/application_launch.h"

static bool createApplication() {
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  keepArgumentsFromBeingOpened();
  beginQuietStart();
  const bool created = createSharedApplication();
  endQuietStart();
  [pool release];
  return created;
}

bool openWindowSystem() { return NSApp != nil || (isDisplayAvailable() && createApplication()); }

bool keepsEarlyEventHandlers() { return true; }
