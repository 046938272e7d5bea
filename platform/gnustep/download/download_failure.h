#ifndef QUORVANE_PLATFORM_GNUSTEP_DOWNLOAD_DOWNLOAD_FAILURE_H
#define QUORVANE_PLATFORM_GNUSTEP_DOWNLOAD_DOWNLOAD_FAILURE_H

#import <Foundation/Foundation.h>

#include <string>

#include "platform/gnustep/download/http_transfer.h"

// Returns an error of the URL domain with `text` as its description and `url` as the failing URL.
NSError* downloadFailure(NSInteger code, const std::string& text, NSString* url);

// Returns the error for a transfer of `url` that libcurl reports as failed.
NSError* failureOfTransfer(const HttpTransfer& transfer, NSString* url);

#endif
