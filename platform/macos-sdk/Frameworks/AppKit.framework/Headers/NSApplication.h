#ifndef APPKIT_NSAPPLICATION_H
#define APPKIT_NSAPPLICATION_H

#import <AppKit/NSResponder.h>

@class NSEvent;
@class NSMenu;

typedef unsigned long long NSEventMask;

SDK_API @interface NSApplication : NSResponder
+ (NSApplication*)sharedApplication SDK_API;
- (void)activateIgnoringOtherApps:(BOOL)ignore SDK_API;
- (void)finishLaunching SDK_API;
- (void)run SDK_API;
- (NSEvent*)nextEventMatchingMask:(NSEventMask)mask
                        untilDate:(NSDate*)limit
                           inMode:(NSString*)mode
                          dequeue:(BOOL)dequeue SDK_API;
- (void)sendEvent:(NSEvent*)event SDK_API;
- (NSMenu*)mainMenu SDK_API;
- (void)setMainMenu:(NSMenu*)menu SDK_API;
@end

// The shared application; nil until it has been created.
SDK_EXTERN NSApplication* NSApp SDK_API;

#endif
