#ifndef FOUNDATION_NSFILEMANAGER_H
#define FOUNDATION_NSFILEMANAGER_H

#import <objc/NSObject.h>

#include <sdk_api.h>

@class NSError;
@class NSString;

SDK_API @interface NSFileManager : NSObject
+ (NSFileManager*)defaultManager SDK_API;
- (BOOL)moveItemAtPath:(NSString*)from toPath:(NSString*)to error:(NSError**)error SDK_API;
- (NSString*)stringWithFileSystemRepresentation:(const char*)path length:(NSUInteger)bytes SDK_API;
@end

#endif
