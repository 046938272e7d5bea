#include "launcher/application.h"

#include <cstdio>

#import <AppKit/AppKit.h>

#include "platform/display.h"
#include "platform/process_end.h"
#include "platform/toolkit.h"

void prepareApplication(char** argv) { prepareToolkit(argv); }

void createApplication() {
  if (!isDisplayAvailable()) {
    fputs("No display: DISPLAY names no window system that can be reached.\n", stderr);
    endProcess(1);
  }
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  beforeApplicationCreation();
  [NSApplication sharedApplication];
  afterApplicationCreation();
  [pool release];
}

void* createAutoreleasePool() { return [[NSAutoreleasePool alloc] init]; }

void drainAutoreleasePool(void* pool) { [static_cast<NSAutoreleasePool*>(pool) drain]; }

void activateApplication() { [NSApp activateIgnoringOtherApps:YES]; }

void runApplication() { [NSApp run]; }
