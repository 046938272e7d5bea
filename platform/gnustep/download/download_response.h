#ifndef QUORVANE_PLATFORM_GNUSTEP_DOWNLOAD_DOWNLOAD_RESPONSE_H
#define QUORVANE_PLATFORM_GNUSTEP_DOWNLOAD_DOWNLOAD_RESPONSE_H

#import <Foundation/Foundation.h>

#include "platform/gnustep/download/http_transfer.h"

// A GNUstep response with the length given by the server: GNUstep's own reads 32 bits.
@interface QuorvaneDownloadResponse : NSHTTPURLResponse {
  long long expectedLength;
}
+ (QuorvaneDownloadResponse*)responseWithURL:(NSURL*)url head:(const ResponseHead&)head;
- (long long)expectedContentLength;
@end

#endif
