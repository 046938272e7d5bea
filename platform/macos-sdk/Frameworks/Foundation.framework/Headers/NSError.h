#ifndef FOUNDATION_NSERROR_H
#define FOUNDATION_NSERROR_H

#import <objc/NSObject.h>

#include <sdk_api.h>

@class NSDictionary;
@class NSString;

SDK_EXTERN NSString* const NSLocalizedDescriptionKey SDK_API;

SDK_API @interface NSError : NSObject
+ (instancetype)errorWithDomain:(NSString*)domain
                           code:(NSInteger)code
                       userInfo:(NSDictionary*)details SDK_API;
- (NSDictionary*)userInfo SDK_API;
- (NSString*)localizedDescription SDK_API;
@end

#endif
