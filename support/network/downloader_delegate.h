#ifndef QUORVANE_SUPPORT_NETWORK_DOWNLOADER_DELEGATE_H
#define QUORVANE_SUPPORT_NETWORK_DOWNLOADER_DELEGATE_H

#import <Foundation/Foundation.h>

// One download: starts it, and follows it as its delegate on the run loop of the thread that
// started it. Included by Objective-C++ files only; others use downloader.h.
@interface Downloader : NSObject <NSURLDownloadDelegate> {
  BOOL isDone;                      // whether the transfer has ended, well or not
  NSURLResponse* downloadResponse;  // the last response, retained
  int bytesReceived;                // since the last response; stops at the largest value
}

- (BOOL)isDone;
- (NSURLResponse*)downloadResponse;
- (int)bytesReceived;

// Starts downloading `url` to the file `path`, replacing an existing one. Returns the transfer,
// which lives until it has ended, or nil, with `isDone` left unset, if none could be created; the
// failure is logged. `downloader` is not used.
- (NSURLDownload*)startDownloadingURL:(id)downloader fromURL:(NSString*)url toFile:(NSString*)path;

- (void)download:(NSURLDownload*)download didFailWithError:(NSError*)error;
- (void)downloadDidFinish:(NSURLDownload*)download;
- (void)setDownloadResponse:(NSURLResponse*)response;

// Stores the response. An answer with an error status ends the download as a failure, because its
// body is not the requested file.
- (void)download:(NSURLDownload*)download didReceiveResponse:(NSURLResponse*)response;
- (void)download:(NSURLDownload*)download didReceiveDataOfLength:(NSUInteger)length;
@end

#endif
