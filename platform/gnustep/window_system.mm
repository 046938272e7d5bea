#include "platform/window_system.h"

#import <AppKit/AppKit.h>

#include "platform/display.h"
#include "platform/gnustep/application_delegate.h"
#import "platform/gnustep/create_application.h"
#include "platform/gnustep/quiet_start.h"
#include "platform/toolkit.h"

static bool createApplication() {
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  beginQuietStart();
  const bool created = createSharedApplication();
  endQuietStart();
  if (created) {
    [NSApp setDelegate:[[ApplicationDelegate alloc] init]];
  }
  [pool release];
  return created;
}

bool openWindowSystem() { return NSApp != nil || (isDisplayAvailable() && createApplication()); }
