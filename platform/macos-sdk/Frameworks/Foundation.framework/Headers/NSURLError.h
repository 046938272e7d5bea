#ifndef FOUNDATION_NSURLERROR_H
#define FOUNDATION_NSURLERROR_H

#import <objc/NSObject.h>

#include <sdk_api.h>

@class NSString;

SDK_EXTERN NSString* const NSURLErrorDomain SDK_API;
SDK_EXTERN NSString* const NSURLErrorFailingURLStringErrorKey SDK_API;

enum : NSInteger {
  NSURLErrorBadURL SDK_API = -1000,
  NSURLErrorTimedOut SDK_API = -1001,
  NSURLErrorBadServerResponse SDK_API = -1011,
};

#endif
