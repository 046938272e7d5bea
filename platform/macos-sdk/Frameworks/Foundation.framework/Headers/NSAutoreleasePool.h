#ifndef FOUNDATION_NSAUTORELEASEPOOL_H
#define FOUNDATION_NSAUTORELEASEPOOL_H

#import <objc/NSObject.h>

#include <sdk_api.h>

SDK_API @interface NSAutoreleasePool : NSObject
- (void)drain SDK_API;
@end

#endif
