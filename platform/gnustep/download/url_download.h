#ifndef QUORVANE_PLATFORM_GNUSTEP_DOWNLOAD_URL_DOWNLOAD_H
#define QUORVANE_PLATFORM_GNUSTEP_DOWNLOAD_URL_DOWNLOAD_H

#import <Foundation/Foundation.h>

#include <string>

#import "platform/gnustep/download/curl_run_loop.h"
#include "platform/gnustep/download/http_transfer.h"
#include "platform/gnustep/download/partial_file.h"

// The result of NSURLDownload's allocation: a download over libcurl. GNUstep's own class never
// calls its delegate. Only GET requests of http and https URLs work; any other fails. The download
// and its delegate stay retained until it has ended, and every call of the delegate comes from the
// run loop, in its default mode, of the thread that created the download.
@interface QuorvaneURLDownload : NSURLDownload <QuorvaneCurlLoopOwner> {
  NSURLRequest* request;  // the latest, redirects followed
  id delegate;            // null when the download has ended
  QuorvaneCurlLoop* loop;
  HttpTransfer* transfer;
  PartialFile* file;
  std::string* destination;  // null until it is set
  BOOL overwrites;
  int redirects;
  NSTimer* idleTimer;
  unsigned long idleActivity;  // the transfer's activity when it was last looked at
  NSTimeInterval idleSince;
}
@end

#endif
