#ifndef FOUNDATION_NSRUNLOOP_H
#define FOUNDATION_NSRUNLOOP_H

#import <objc/NSObject.h>

#include <sdk_api.h>

@class NSDate;
@class NSString;

SDK_EXTERN NSString* const NSDefaultRunLoopMode SDK_API;

SDK_API @interface NSRunLoop : NSObject
+ (NSRunLoop*)currentRunLoop SDK_API;
- (BOOL)runMode:(NSString*)mode beforeDate:(NSDate*)limit SDK_API;
@end

#endif
