#ifndef FOUNDATION_NSSTRING_H
#define FOUNDATION_NSSTRING_H

#import <objc/NSObject.h>

#include <sdk_api.h>

typedef NSUInteger NSStringEncoding;

enum : NSStringEncoding {
  NSISOLatin1StringEncoding SDK_API = 5,
};

SDK_API @interface NSString : NSObject
+ (instancetype)stringWithUTF8String:(const char*)text SDK_API;
+ (instancetype)stringWithCString:(const char*)text encoding:(NSStringEncoding)encoding SDK_API;
+ (instancetype)stringWithFormat:(NSString*)format, ... SDK_FORMAT(1, 2)SDK_API;
- (NSUInteger)length SDK_API;
- (const char*)UTF8String SDK_API;
@end

SDK_EXTERN void NSLog(NSString* format, ...) SDK_FORMAT(1, 2) SDK_API;

#endif
