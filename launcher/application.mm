#include "launcher/application.h"

#include <cstdio>

#import <AppKit/AppKit.h>

#include "platform/process_end.h"
#include "platform/toolkit.h"
#include "platform/window_system.h"
#include "support/exit_status.h"
#include "support/window_events.h"

void prepareApplication(char** argv) { prepareToolkit(argv); }

void createApplication() {
  if (!openWindowSystem()) {
    fputs("No display: DISPLAY names no window system that can be reached.\n", stderr);
    endProcess(EXIT_STATUS_FAILURE);
  }
}

void* createAutoreleasePool() { return [[NSAutoreleasePool alloc] init]; }

void drainAutoreleasePool(void* pool) { [static_cast<NSAutoreleasePool*>(pool) drain]; }

void letEventsArrive(double seconds) {
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  [NSApp finishLaunching];
  handleEvents(seconds);
  [pool release];
}

void activateApplication() { [NSApp activateIgnoringOtherApps:YES]; }

void runApplication() { [NSApp run]; }
