#ifndef QUORVANE_PLATFORM_GNUSTEP_DOWNLOAD_CURL_RUN_LOOP_H
#define QUORVANE_PLATFORM_GNUSTEP_DOWNLOAD_CURL_RUN_LOOP_H

#import <Foundation/Foundation.h>

#include <map>

#include "platform/gnustep/download/curl_library.h"

@class QuorvaneCurlLoop;

@protocol QuorvaneCurlLoopOwner
// Something may have happened to the transfers of the multi handle. Called outside of libcurl, on
// the run loop's thread; the owner may close the loop here.
- (void)curlLoopDidTurn:(QuorvaneCurlLoop*)loop;
// The transfer of `handle` has ended with `result`.
- (void)curlLoop:(QuorvaneCurlLoop*)loop handle:(CURL*)handle didEndWith:(CURLcode)result;
@end

// A libcurl multi handle whose sockets and timer are watched by the run loop, in its default mode,
// of the thread that created it. Used only on that thread.
@interface QuorvaneCurlLoop : NSObject <RunLoopEvents> {
  const CurlLibrary* curl;
  CURLM* multi;
  NSRunLoop* runLoop;
  NSTimer* timer;
  id<QuorvaneCurlLoopOwner> owner;        // not retained
  std::map<curl_socket_t, int>* sockets;  // what is watched of each: CURL_POLL_ bits
}
// Returns null if there is no memory. `owner` is called until close.
- (id)initWithLibrary:(const CurlLibrary*)library owner:(id<QuorvaneCurlLoopOwner>)loopOwner;

- (CURLM*)multi;

// Stops watching and frees the multi handle, which must have no transfers left. The owner is no
// longer called.
- (void)close;
@end

#endif
