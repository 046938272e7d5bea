#include "launcher/shell/application.h"

#include <cstdio>

#import <AppKit/AppKit.h>

#include "launcher/shell/application_delegate.h"
#include "launcher/shell/url_events.h"
#include "platform/display.h"
#include "platform/toolkit.h"
#include "platform/window_system.h"
#include "support/events/application_launch.h"
#include "support/events/window_events.h"
#include "support/failure/failure.h"
#include "support/process/exit_status.h"

void prepareApplication(char** argv) { prepareToolkit(argv); }

void createApplication() {
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  if (!openWindowSystem()) {
    fputs(missingDisplayMessage(), stderr);
    failProcess(EXIT_STATUS_FAILURE, Failure::NoWindowSystem);
  }
  // The application does not own its delegate, which lives as long as the process.
  [NSApp setDelegate:(id)[[ApplicationDelegate alloc] init]];
  if (keepsEarlyEventHandlers()) {
    registerOSXEventListener();
  }
  [pool release];
}

void* createAutoreleasePool() { return [[NSAutoreleasePool alloc] init]; }

void drainAutoreleasePool(void* pool) { [static_cast<NSAutoreleasePool*>(pool) drain]; }

void letEventsArrive(double seconds) {
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  finishLaunching();
  handleEvents(seconds);
  [pool release];
}

void activateApplication() { [NSApp activateIgnoringOtherApps:YES]; }

void runApplication() { [NSApp run]; }
