#include "support/events/application_launch.h"

#include <gtest/gtest.h>

#import <AppKit/AppKit.h>

// An application that counts how often its launch is finished.
@interface LaunchCounter : NSObject {
 @public
  int launches;
}
- (BOOL)isRunning;
- (void)finishLaunching;
@end

@implementation LaunchCounter
- (BOOL)isRunning {
  return NO;
}
- (void)finishLaunching {
  ++launches;
}
@end

TEST(ApplicationLaunch, LeavesUnknownArgumentsAlone) {
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  keepArgumentsFromBeingOpened();
  NSString* value =
      [[NSUserDefaults standardUserDefaults] stringForKey:@"NSTreatUnknownArgumentsAsOpen"];
  EXPECT_STREQ("NO", value == nil ? "(none)" : [value UTF8String]);
  [pool release];
}

TEST(ApplicationLaunch, IsFinishedOnce) {
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  LaunchCounter* application = [[LaunchCounter alloc] init];
  NSApp = reinterpret_cast<NSApplication*>(application);
  finishLaunching();
  finishLaunching();
  NSApp = nil;
  EXPECT_EQ(1, application->launches);
  [application release];
  [pool release];
}
