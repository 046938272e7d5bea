#ifndef APPKIT_NSAPPLICATION_H
#define APPKIT_NSAPPLICATION_H

#import <AppKit/NSResponder.h>

@class NSMenu;

SDK_API @interface NSApplication : NSResponder
+ (NSApplication*)sharedApplication SDK_API;
- (void)activateIgnoringOtherApps:(BOOL)ignore SDK_API;
- (void)run SDK_API;
- (NSMenu*)mainMenu SDK_API;
- (void)setMainMenu:(NSMenu*)menu SDK_API;
@end

// The shared application; nil until it has been created.
SDK_EXTERN NSApplication* NSApp SDK_API;

#endif
