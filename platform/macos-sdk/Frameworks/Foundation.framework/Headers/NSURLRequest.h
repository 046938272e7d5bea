#ifndef FOUNDATION_NSURLREQUEST_H
#define FOUNDATION_NSURLREQUEST_H

#import <Foundation/NSDate.h>

@class NSURL;

typedef enum NSURLRequestCachePolicy : NSUInteger {
  NSURLRequestUseProtocolCachePolicy SDK_API = 0,
} NSURLRequestCachePolicy;

SDK_API @interface NSURLRequest : NSObject
+ (instancetype)requestWithURL:(NSURL*)url
                   cachePolicy:(NSURLRequestCachePolicy)policy
               timeoutInterval:(NSTimeInterval)seconds SDK_API;
@end

#endif
