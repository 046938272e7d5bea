#include "support/downloader.h"

#include <unistd.h>

#include <algorithm>
#include <climits>

#import "support/cocoa_text.h"
#import "support/downloader_delegate.h"
#include "support/event_wait.h"

@implementation Downloader

- (BOOL)isDone {
  return isDone;
}

- (NSURLResponse*)downloadResponse {
  return downloadResponse;
}

- (int)bytesReceived {
  return bytesReceived;
}

static void logFailure(NSError* error) {
  NSLog(@"Download failed! Error - %@ %@", [error localizedDescription],
        [[error userInfo] objectForKey:NSURLErrorFailingURLStringErrorKey]);
}

static NSError* failure(NSInteger code, NSString* text, NSString* url) {
  NSDictionary* details =
      [NSDictionary dictionaryWithObjectsAndKeys:text, NSLocalizedDescriptionKey, url,
                                                 NSURLErrorFailingURLStringErrorKey, nil];
  return [NSError errorWithDomain:NSURLErrorDomain code:code userInfo:details];
}

- (BOOL)startDownloadingURL:(id)downloader fromURL:(NSString*)url toFile:(NSString*)path {
  (void)downloader;
  NSLog(@"Starting download from = %@\n", url);
  isDone = NO;
  NSURL* address = [NSURL URLWithString:url];
  if (address == nil) {
    logFailure(failure(NSURLErrorBadURL, @"This is not a valid URL:", url));
    return NO;
  }
  NSURLRequest* request = [NSURLRequest requestWithURL:address
                                           cachePolicy:NSURLRequestUseProtocolCachePolicy
                                       timeoutInterval:60.0];
  NSURLDownload* download = [[NSURLDownload alloc] initWithRequest:request delegate:self];
  if (download == nil) {
    NSLog(@"Download failed");
    return NO;
  }
  NSLog(@"Set destination file to %@\n", path);
  [download setDestination:path allowOverwrite:YES];
  return YES;
}

// Lets go of a download that has ended. It is inside of one of its own methods and may need itself
// until that returns.
static void letGo(NSURLDownload* download) {
  [download autorelease];
  endEventWait();
}

- (void)download:(NSURLDownload*)download didFailWithError:(NSError*)error {
  letGo(download);
  logFailure(error);
  isDone = YES;
}

- (void)downloadDidFinish:(NSURLDownload*)download {
  letGo(download);
  NSLog(@"%@", @"downloadDidFinish");
  isDone = YES;
}

- (void)setDownloadResponse:(NSURLResponse*)response {
  [response retain];
  [downloadResponse release];
  downloadResponse = response;
}

static bool isErrorResponse(NSURLResponse* response) {
  if (![response isKindOfClass:[NSHTTPURLResponse class]]) {
    return false;
  }
  const NSInteger status = [(NSHTTPURLResponse*)response statusCode];
  return status < 200 || status > 299;
}

static NSError* errorForResponse(NSURLResponse* response) {
  const NSInteger status = [(NSHTTPURLResponse*)response statusCode];
  NSString* text =
      [NSString stringWithFormat:@"The server answered with status %d", static_cast<int>(status)];
  return failure(NSURLErrorBadServerResponse, text, [[response URL] absoluteString]);
}

- (void)download:(NSURLDownload*)download didReceiveResponse:(NSURLResponse*)response {
  bytesReceived = 0;
  [self setDownloadResponse:response];
  if (isErrorResponse(response)) {
    [download cancel];
    [self download:download didFailWithError:errorForResponse(response)];
  }
}

- (void)download:(NSURLDownload*)download didReceiveDataOfLength:(NSUInteger)length {
  (void)download;
  const NSUInteger room = static_cast<NSUInteger>(INT_MAX - bytesReceived);
  bytesReceived += static_cast<int>(std::min(length, room));
  const long long expected = [downloadResponse expectedContentLength];
  if (expected == -1) {
    NSLog(@"Bytes received - %d", bytesReceived);
    return;
  }
  const float percent = static_cast<float>(bytesReceived) / static_cast<float>(expected) * 100.0F;
  NSLog(@"Percent complete - %f", std::min(percent, 100.0F));
}

- (void)dealloc {
  [downloadResponse release];
  [super dealloc];
}

@end

// Runs the run loop until the download has ended, looking for that at least every 0.2 seconds and
// as soon as it has been told: a finished download is not kept waiting.
static void waitForEnd(Downloader* downloader) {
  while (![downloader isDone]) {
    waitForEvent(0.2);
  }
}

int downloadFile(const char* url, const char* targetPath) {
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  unlink(targetPath);
  Downloader* downloader = [[Downloader alloc] init];
  const BOOL started = [downloader startDownloadingURL:downloader
                                               fromURL:textFromUTF8(url)
                                                toFile:textFromUTF8(targetPath)];
  // A transfer that was never born would never end.
  if (started) {
    waitForEnd(downloader);
  }
  [downloader release];
  [pool release];
  return 1;
}
