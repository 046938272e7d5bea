#ifndef FOUNDATION_NSTHREAD_H
#define FOUNDATION_NSTHREAD_H

#import <Foundation/NSDate.h>

SDK_API @interface NSThread : NSObject
+ (NSThread*)currentThread SDK_API;
+ (void)sleepForTimeInterval:(NSTimeInterval)seconds SDK_API;
- (instancetype)initWithTarget:(id)target selector:(SEL)selector object:(id)argument SDK_API;
- (void)start SDK_API;
- (void)cancel SDK_API;
- (BOOL)isCancelled SDK_API;
@end

@interface NSObject (NSThreadPerformAdditions)
- (void)performSelectorOnMainThread:(SEL)selector
                         withObject:(id)argument
                      waitUntilDone:(BOOL)wait SDK_API;
@end

#endif
