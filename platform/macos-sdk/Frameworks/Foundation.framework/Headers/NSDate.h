#ifndef FOUNDATION_NSDATE_H
#define FOUNDATION_NSDATE_H

#import <objc/NSObject.h>

#include <sdk_api.h>

typedef double NSTimeInterval;

SDK_API @interface NSDate : NSObject
+ (NSDate*)distantFuture SDK_API;
+ (NSDate*)distantPast SDK_API;
+ (instancetype)dateWithTimeIntervalSinceNow:(NSTimeInterval)seconds SDK_API;
@end

#endif
