#ifndef FOUNDATION_NSURL_H
#define FOUNDATION_NSURL_H

#import <objc/NSObject.h>

#include <sdk_api.h>

@class NSString;

SDK_API @interface NSURL : NSObject
+ (NSURL*)fileURLWithPath:(NSString*)path SDK_API;
+ (NSURL*)fileURLWithPath:(NSString*)path isDirectory:(BOOL)isDirectory SDK_API;
+ (instancetype)URLWithString:(NSString*)text SDK_API;
- (NSString*)absoluteString SDK_API;
@end

#endif
