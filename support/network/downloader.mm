#include "support/network/downloader.h"

#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <climits>

#include "platform/main_thread.h"
#include "support/events/event_wait.h"
#include "support/events/quit_cleanup.h"
#import "support/network/downloader_delegate.h"
#import "support/text/cocoa_text.h"

double slowTransferSeconds = 60;

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

- (NSURLDownload*)startDownloadingURL:(id)downloader fromURL:(NSString*)url toFile:(NSString*)path {
  (void)downloader;
  NSLog(@"Starting download from = %@\n", url);
  isDone = NO;
  NSURL* address = [NSURL URLWithString:url];
  if (address == nil) {
    logFailure(failure(NSURLErrorBadURL, @"This is not a valid URL:", url));
    return nil;
  }
  NSURLRequest* request = [NSURLRequest requestWithURL:address
                                           cachePolicy:NSURLRequestUseProtocolCachePolicy
                                       timeoutInterval:60.0];
  NSURLDownload* download = [[NSURLDownload alloc] initWithRequest:request delegate:self];
  if (download == nil) {
    NSLog(@"Download failed");
    return nil;
  }
  NSLog(@"Set destination file to %@\n", path);
  [download setDestination:path allowOverwrite:YES];
  return download;
}

// Releases a finished download. It is inside one of its own methods and may need itself until that
// returns.
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

namespace {

// Whether a transfer makes progress, judged by the bytes since its last response.
class Pace {
 public:
  // Records `received` bytes. Returns whether too few came for too long, less than LEAST_BYTES.
  bool isTooSlow(int received) {
    const auto now = std::chrono::steady_clock::now();
    // A computer that slept, or whose user kept a menu open, gave the server no chance.
    waited_ += std::min(std::chrono::duration<double>(now - lastLook_).count(), kLongestStep);
    lastLook_ = now;
    base_ = std::min(base_, received);
    if (received - base_ >= LEAST_BYTES || received == INT_MAX) {
      base_ = received;
      waited_ = 0;
    }
    return waited_ >= slowTransferSeconds;
  }

 private:
  static constexpr double kLongestStep = 1;
  std::chrono::steady_clock::time_point lastLook_ = std::chrono::steady_clock::now();
  double waited_ = 0;  // seconds since LEAST_BYTES arrived
  int base_ = 0;       // bytes received by then
};

}  // namespace

// Runs the run loop until the download has ended, checking at least every 0.2 seconds and as soon
// as it is notified: a finished download is not kept waiting. Returns why it must be abandoned, or
// nil if it has ended.
static NSString* waitForEnd(Downloader* downloader, int mostBytes) {
  Pace pace;
  while (![downloader isDone]) {
    waitForEvent(0.2);
    if ([downloader bytesReceived] > mostBytes) {
      return @"The file is too large";
    }
    if (![downloader isDone] && pace.isTooSlow([downloader bytesReceived])) {
      return @"The server sends next to nothing";
    }
  }
  return nil;
}

static void giveUp(Downloader* downloader, NSURLDownload* download, NSString* reason,
                   NSString* url) {
  NSError* error = failure(NSURLErrorTimedOut, reason, url);
  if ([downloader isDone]) {
    logFailure(error);
    return;
  }
  [download cancel];
  [downloader download:download didFailWithError:error];
}

// The download that the main thread waits for, and its file.
static NSURLDownload* mainDownload = nil;
static const char* mainTarget = nullptr;

static void cancelMainDownload() {
  [mainDownload cancel];
  unlink(mainTarget);
}

// Waits for the end of `download`, which leaves a file only if it succeeded.
static void finish(Downloader* downloader, NSURLDownload* download, NSString* url,
                   const char* targetPath, int mostBytes) {
  const bool isOnMain = isMainThread();
  if (isOnMain) {
    mainDownload = download;
    mainTarget = targetPath;
    addQuitCleanup(cancelMainDownload);
  }
  NSString* reason = waitForEnd(downloader, mostBytes);
  if (isOnMain) {
    removeQuitCleanup(cancelMainDownload);
  }
  if (reason != nil) {
    giveUp(downloader, download, reason, url);
    unlink(targetPath);
  }
}

int downloadFile(const char* url, const char* targetPath, int mostBytes) {
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  unlink(targetPath);
  Downloader* downloader = [[Downloader alloc] init];
  NSString* address = textFromUTF8(url);
  NSURLDownload* download = [downloader startDownloadingURL:downloader
                                                    fromURL:address
                                                     toFile:textFromUTF8(targetPath)];
  // Without a transfer there is nothing to wait for.
  if (download != nil) {
    finish(downloader, download, address, targetPath, mostBytes);
  }
  [downloader release];
  [pool release];
  return 1;
}

int downloadFile(const char* url, const char* targetPath) {
  return downloadFile(url, targetPath, INT_MAX);
}
