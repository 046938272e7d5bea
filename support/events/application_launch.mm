#include "support/events/application_launch.h"

#import <AppKit/AppKit.h>

void keepArgumentsFromBeingOpened() {
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  NSDictionary* defaults = [NSDictionary dictionaryWithObject:@"NO"
                                                       forKey:@"NSTreatUnknownArgumentsAsOpen"];
  [[NSUserDefaults standardUserDefaults] registerDefaults:defaults];
  [pool release];
}

void finishLaunching() {
  static bool hasFinished = false;
  if (!hasFinished && ![NSApp isRunning]) {
    [NSApp finishLaunching];
  }
  hasFinished = true;
}
