#ifndef FOUNDATION_NSVALUE_H
#define FOUNDATION_NSVALUE_H

#import <objc/NSObject.h>

#include <sdk_api.h>

@interface NSValue : NSObject
@end

SDK_API @interface NSNumber : NSValue
+ (NSNumber*)numberWithInt:(int)value SDK_API;
- (int)intValue SDK_API;
@end

#endif
