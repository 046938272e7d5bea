#ifndef FOUNDATION_NSRUNLOOP_H
#define FOUNDATION_NSRUNLOOP_H

#import <Foundation/NSDate.h>

@class NSString;

SDK_EXTERN NSString* const NSDefaultRunLoopMode SDK_API;

SDK_API @interface NSRunLoop : NSObject
+ (NSRunLoop*)currentRunLoop SDK_API;
- (BOOL)runMode:(NSString*)mode beforeDate:(NSDate*)limit SDK_API;
@end

@interface NSObject (NSDelayedPerforming)
- (void)performSelector:(SEL)selector
             withObject:(id)argument
             afterDelay:(NSTimeInterval)seconds SDK_API;
+ (void)cancelPreviousPerformRequestsWithTarget:(id)target SDK_API;
@end

#endif
