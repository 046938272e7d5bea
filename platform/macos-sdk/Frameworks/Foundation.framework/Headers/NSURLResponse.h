#ifndef FOUNDATION_NSURLRESPONSE_H
#define FOUNDATION_NSURLRESPONSE_H

#import <objc/NSObject.h>

#include <sdk_api.h>

@class NSURL;

SDK_API @interface NSURLResponse : NSObject
- (NSURL*)URL SDK_API;
- (long long)expectedContentLength SDK_API;
@end

SDK_API @interface NSHTTPURLResponse : NSURLResponse
- (NSInteger)statusCode SDK_API;
@end

#endif
