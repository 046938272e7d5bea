#ifndef QUORVANE_PLATFORM_GNUSTEP_DOWNLOAD_DOWNLOAD_RESPONSE_H
#define QUORVANE_PLATFORM_GNUSTEP_DOWNLOAD_DOWNLOAD_RESPONSE_H

#import <Foundation/Foundation.h>

#include "platform/gnustep/download/http_transfer.h"

// A response of GNUstep's with the length as the server gave it: GNUstep's own reads 32 bits.
@interface QuorvaneDownloadResponse : NSHTTPURLResponse {
  long long expectedLength;
}
+ (QuorvaneDownloadResponse*)responseWithURL:(NSURL*)url head:(const ResponseHead&)head;
- (long long)expectedContentLength;
@end

#endif
