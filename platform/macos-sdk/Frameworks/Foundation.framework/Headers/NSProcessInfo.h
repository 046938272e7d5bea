#ifndef FOUNDATION_NSPROCESSINFO_H
#define FOUNDATION_NSPROCESSINFO_H

#import <objc/NSObject.h>

#include <sdk_api.h>

@class NSString;

SDK_API @interface NSProcessInfo : NSObject
+ (NSProcessInfo*)processInfo SDK_API;
- (NSString*)processName SDK_API;
- (void)setProcessName:(NSString*)name SDK_API;
@end

#endif
