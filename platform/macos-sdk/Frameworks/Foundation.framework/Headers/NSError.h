#ifndef FOUNDATION_NSERROR_H
#define FOUNDATION_NSERROR_H

#import <objc/NSObject.h>

#include <sdk_api.h>

@class NSString;

SDK_API @interface NSError : NSObject
- (NSString*)localizedDescription SDK_API;
@end

#endif
