#ifndef FOUNDATION_NSURLDOWNLOAD_H
#define FOUNDATION_NSURLDOWNLOAD_H

#import <objc/NSObject.h>

#include <sdk_api.h>

@class NSError;
@class NSString;
@class NSURLDownload;
@class NSURLRequest;
@class NSURLResponse;

@protocol NSURLDownloadDelegate <NSObject>
@optional
- (void)download:(NSURLDownload*)download didReceiveResponse:(NSURLResponse*)r SDK_IMPLEMENTED;
- (void)download:(NSURLDownload*)download didReceiveDataOfLength:(NSUInteger)n SDK_IMPLEMENTED;
- (void)downloadDidFinish:(NSURLDownload*)download SDK_IMPLEMENTED;
- (void)download:(NSURLDownload*)download didFailWithError:(NSError*)error SDK_IMPLEMENTED;
@end

SDK_API @interface NSURLDownload : NSObject
- (instancetype)initWithRequest:(NSURLRequest*)request
                       delegate:(id<NSURLDownloadDelegate>)delegate SDK_API;
- (void)setDestination:(NSString*)path allowOverwrite:(BOOL)allowed SDK_API;
- (void)cancel SDK_API;
@end

#endif
