#ifndef FOUNDATION_NSDICTIONARY_H
#define FOUNDATION_NSDICTIONARY_H

#import <objc/NSObject.h>

#include <sdk_api.h>

SDK_API @interface NSDictionary : NSObject
+ (instancetype)dictionaryWithObject:(id)object forKey:(id)key SDK_API;
+ (instancetype)dictionaryWithObjectsAndKeys:(id)firstObject, ... __attribute__((sentinel))SDK_API;
- (id)objectForKey:(id)key SDK_API;
@end

#endif
