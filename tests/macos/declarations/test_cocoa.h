// Declarations of Apple's frameworks that only the tests use, for compiling these with the headers
// under platform/macos-sdk. Each is compared with the oracles as those are; none is linked against.
#ifndef QUORVANE_TESTS_MACOS_DECLARATIONS_TEST_COCOA_H
#define QUORVANE_TESTS_MACOS_DECLARATIONS_TEST_COCOA_H

#import <Cocoa/Cocoa.h>

typedef short AEReturnID;
typedef int AETransactionID;
typedef unsigned short unichar;

enum { kAutoGenerateReturnID = -1 };
enum { kAnyTransactionID = 0 };

@class NSNotification;

@interface NSNotificationCenter : NSObject
+ (NSNotificationCenter*)defaultCenter;
- (void)addObserver:(id)observer selector:(SEL)selector name:(NSString*)name object:(id)object;
- (void)removeObserver:(id)observer;
@end

extern "C" NSString* const NSThreadWillExitNotification;

@interface NSThread (State)
+ (BOOL)isMainThread;
- (BOOL)isExecuting;
- (BOOL)isFinished;
@end

@interface NSDate (Distance)
+ (id)date;
- (NSTimeInterval)timeIntervalSinceNow;
@end

@interface NSTimer (Contents)
- (id)userInfo;
@end

extern "C" const NSPoint NSZeroPoint;

@interface NSWindow (Number)
- (NSInteger)windowNumber;
@end

@interface NSEvent (Kind)
- (NSEventType)type;
@end

@interface NSNumber (Truth)
+ (NSNumber*)numberWithBool:(BOOL)value;
@end

@interface NSObject (DelayedPerforming)
- (void)performSelector:(SEL)selector withObject:(id)argument afterDelay:(NSTimeInterval)delay;
@end

@interface NSAppleEventDescriptor (Making)
+ (NSAppleEventDescriptor*)appleEventWithEventClass:(AEEventClass)eventClass
                                            eventID:(AEEventID)eventID
                                   targetDescriptor:(NSAppleEventDescriptor*)target
                                           returnID:(AEReturnID)returnID
                                      transactionID:(AETransactionID)transactionID;
+ (NSAppleEventDescriptor*)descriptorWithString:(NSString*)string;
- (void)setParamDescriptor:(NSAppleEventDescriptor*)descriptor forKeyword:(AEKeyword)keyword;
@end

@interface NSString (Characters)
+ (id)stringWithCharacters:(const unichar*)characters length:(NSUInteger)length;
@end

@interface NSDictionary (Making)
+ (id)dictionary;
- (instancetype)initWithObjectsAndKeys:(id)firstObject, ... __attribute__((sentinel));
@end

@interface NSProcessInfo (Arguments)
- (NSArray*)arguments;
@end

@interface NSUserDefaults (Reading)
- (NSString*)stringForKey:(NSString*)name;
@end

@interface NSRunLoop (Running)
- (void)runUntilDate:(NSDate*)limit;
@end

@interface NSURLDownload (Request)
- (NSURLRequest*)request;
@end

@interface NSURLRequest (Contents)
- (NSURLRequestCachePolicy)cachePolicy;
- (NSTimeInterval)timeoutInterval;
@end

@interface NSURLResponse (Making)
- (id)initWithURL:(NSURL*)url
                 MIMEType:(NSString*)type
    expectedContentLength:(NSInteger)length
         textEncodingName:(NSString*)name;
@end

@interface NSHTTPURLResponse (Making)
- (id)initWithURL:(NSURL*)url
       statusCode:(NSInteger)status
      HTTPVersion:(NSString*)version
     headerFields:(NSDictionary*)fields;
@end

extern "C" NSString* const NSApplicationDidFinishLaunchingNotification;

@interface NSApplication (Activity)
- (BOOL)isActive;
- (void)deactivate;
- (void)terminate:(id)sender;
- (NSImage*)applicationIconImage;
@end

@interface NSMenu (Bar)
+ (BOOL)menuBarVisible;
- (NSString*)title;
@end

#endif
