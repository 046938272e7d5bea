#ifndef FOUNDATION_NSBUNDLE_H
#define FOUNDATION_NSBUNDLE_H

#import <objc/NSObject.h>

#include <sdk_api.h>

@class NSDictionary;
@class NSString;

SDK_API @interface NSBundle : NSObject
+ (NSBundle*)mainBundle SDK_API;
+ (instancetype)bundleWithPath:(NSString*)path SDK_API;
- (NSDictionary*)infoDictionary SDK_API;
- (NSString*)pathForResource:(NSString*)name ofType:(NSString*)extension SDK_API;
@end

#endif
