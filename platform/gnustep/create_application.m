#import "platform/gnustep/create_application.h"

#import <AppKit/AppKit.h>

// Plain Objective-C: the Objective-C++ compiler cannot catch the toolkit's exceptions here.
int createSharedApplication(void) {
  @try {
    [NSApplication sharedApplication];
  } @catch (NSException* exception) {
    NSApp = nil;
  }
  return NSApp != nil;
}
