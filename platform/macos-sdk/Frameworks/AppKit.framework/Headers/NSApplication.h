#ifndef APPKIT_NSAPPLICATION_H
#define APPKIT_NSAPPLICATION_H

#import <AppKit/NSResponder.h>

@class NSApplication;
@class NSArray;
@class NSEvent;
@class NSImage;
@class NSMenu;
@class NSNotification;

typedef unsigned long long NSEventMask;

typedef enum NSApplicationTerminateReply : NSUInteger {
  NSTerminateNow SDK_API = 1,
  NSTerminateLater SDK_API = 2,
} NSApplicationTerminateReply;

typedef enum NSApplicationDelegateReply : NSUInteger {
  NSApplicationDelegateReplySuccess SDK_API = 0,
} NSApplicationDelegateReply;

@protocol NSApplicationDelegate <NSObject>
@optional
- (void)applicationWillFinishLaunching:(NSNotification*)notification SDK_IMPLEMENTED;
- (void)application:(NSApplication*)application openFiles:(NSArray*)paths SDK_IMPLEMENTED;
- (NSApplicationTerminateReply)applicationShouldTerminate:(NSApplication*)sender SDK_IMPLEMENTED;
@end

SDK_API @interface NSApplication : NSResponder
+ (NSApplication*)sharedApplication SDK_API;
- (void)setDelegate:(id<NSApplicationDelegate>)delegate SDK_API;
- (void)activateIgnoringOtherApps:(BOOL)ignore SDK_API;
- (void)finishLaunching SDK_API;
- (void)run SDK_API;
- (BOOL)isRunning SDK_API;
- (void)stop:(id)sender SDK_API;
- (NSEvent*)nextEventMatchingMask:(NSEventMask)mask
                        untilDate:(NSDate*)limit
                           inMode:(NSString*)mode
                          dequeue:(BOOL)dequeue SDK_API;
- (void)postEvent:(NSEvent*)event atStart:(BOOL)atStart SDK_API;
- (void)sendEvent:(NSEvent*)event SDK_API;
- (void)replyToOpenOrPrint:(NSApplicationDelegateReply)reply SDK_API;
- (NSMenu*)mainMenu SDK_API;
- (void)setMainMenu:(NSMenu*)menu SDK_API;
- (void)setApplicationIconImage:(NSImage*)image SDK_API;
@end

// The shared application; nil until it has been created.
SDK_EXTERN NSApplication* NSApp SDK_API;

#endif
