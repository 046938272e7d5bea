#import "platform/gnustep/download/url_download.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstring>

#import "platform/gnustep/download/download_failure.h"
#import "platform/gnustep/download/download_response.h"
#include "platform/gnustep/download/redirect.h"
#import "support/text/cocoa_text.h"

static const int kMostRedirects = 20;

// Seconds on a clock that nobody sets.
static NSTimeInterval steadyNow() {
  const auto now = std::chrono::steady_clock::now().time_since_epoch();
  return std::chrono::duration<NSTimeInterval>(now).count();
}

@interface QuorvaneURLDownload (Steps)
- (NSString*)urlText;
- (void)begin;
- (void)startTransfer;
- (void)deliverHead;
- (void)followRedirectTo:(const std::string&)url head:(const ResponseHead&)head;
- (void)acceptHead:(const ResponseHead&)head;
- (BOOL)createFile;
- (void)deliverData;
- (void)deliverEnd;
- (void)complete;
- (void)checkIdle:(NSTimer*)timer;
- (void)stop;
- (void)failWith:(NSError*)error;
- (void)failWithCode:(NSInteger)code text:(const std::string&)text;
@end

@implementation NSURLDownload (QuorvaneAllocation)

+ (id)allocWithZone:(NSZone*)zone {
  Class made = self == [NSURLDownload class] ? [QuorvaneURLDownload class] : self;
  return NSAllocateObject(made, 0, zone);
}

@end

@implementation QuorvaneURLDownload

- (id)initWithRequest:(NSURLRequest*)firstRequest delegate:(id)downloadDelegate {
  const CurlLibrary* curl = curlLibrary();
  if (curl != nullptr && [firstRequest URL] != nil) {
    loop = [[QuorvaneCurlLoop alloc] initWithLibrary:curl owner:self];
  }
  if (loop == nil) {
    [self release];
    return nil;
  }
  request = [firstRequest copy];
  delegate = [downloadDelegate retain];
  file = new PartialFile;
  [self retain];  // until stop
  idleSince = steadyNow();
  idleTimer = [NSTimer scheduledTimerWithTimeInterval:std::min(1.0, [request timeoutInterval] / 10)
                                               target:self
                                             selector:@selector(checkIdle:)
                                             userInfo:nil
                                              repeats:YES];
  [self performSelector:@selector(begin) withObject:nil afterDelay:0];
  return self;
}

- (id)initWithResumeData:(NSData*)resumeData delegate:(id)downloadDelegate path:(NSString*)path {
  (void)resumeData;
  (void)downloadDelegate;
  (void)path;
  [self release];
  return nil;
}

- (void)dealloc {
  delete destination;
  [request release];
  [super dealloc];
}

- (NSURLRequest*)request {
  return request;
}

- (void)setDestination:(NSString*)path allowOverwrite:(BOOL)allowOverwrite {
  delete destination;
  destination = new std::string([path UTF8String]);  // as on a Mac
  overwrites = allowOverwrite;
}

- (void)cancel {
  [self retain];
  [self stop];
  [self release];
}

- (NSString*)urlText {
  return [[request URL] absoluteString];
}

- (void)begin {
  [self retain];
  if ([delegate respondsToSelector:@selector(downloadDidBegin:)]) {
    [delegate downloadDidBegin:self];
  }
  if (delegate == nil) {
    // cancelled
  } else if (![[request HTTPMethod] isEqualToString:@"GET"] ||
             !isHttpUrl(*curlLibrary(), [[self urlText] UTF8String])) {
    [self failWithCode:NSURLErrorUnsupportedURL text:"Only HTTP URLs can be downloaded"];
  } else {
    [self startTransfer];
  }
  [self release];
}

static HeaderFields fieldsOf(NSURLRequest* request) {
  HeaderFields fields;
  NSDictionary* dictionary = [request allHTTPHeaderFields];
  NSEnumerator* names = [dictionary keyEnumerator];
  for (NSString* name = [names nextObject]; name != nil; name = [names nextObject]) {
    fields.emplace_back([name UTF8String], [[dictionary objectForKey:name] UTF8String]);
  }
  return fields;
}

- (void)startTransfer {
  delete transfer;
  transfer = new HttpTransfer(*curlLibrary(), [loop multi]);
  idleSince = steadyNow();
  if (!transfer->start([[self urlText] UTF8String], fieldsOf(request))) {
    [self failWithCode:NSURLErrorUnknown text:"The transfer could not be started"];
  }
}

- (void)curlLoop:(QuorvaneCurlLoop*)sender handle:(CURL*)handle didEndWith:(CURLcode)result {
  (void)sender;
  if (transfer != nullptr) {
    transfer->noteEnd(handle, result);
  }
}

- (void)curlLoopDidTurn:(QuorvaneCurlLoop*)sender {
  (void)sender;
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  [self retain];  // every step may end the download
  [self deliverHead];
  [self deliverData];
  [self deliverEnd];
  [self release];
  [pool release];
}

- (void)deliverHead {
  const ResponseHead* head = transfer == nullptr ? nullptr : transfer->takeHead();
  if (head == nullptr) {
    return;
  }
  const std::string target = redirectOf(*curlLibrary(), [[self urlText] UTF8String], *head);
  if (target.empty()) {
    [self acceptHead:*head];
  } else {
    [self followRedirectTo:target head:*head];
  }
}

- (void)followRedirectTo:(const std::string&)url head:(const ResponseHead&)head {
  NSURL* target = [NSURL URLWithString:textFromUTF8(url.c_str())];
  if (target == nil || !isHttpUrl(*curlLibrary(), url)) {
    [self failWithCode:NSURLErrorUnsupportedURL text:"The server redirected to no HTTP URL"];
    return;
  }
  if (++redirects > kMostRedirects) {
    [self failWithCode:NSURLErrorHTTPTooManyRedirects text:"Too many redirects"];
    return;
  }
  NSMutableURLRequest* changed = [[request mutableCopy] autorelease];
  [changed setURL:target];
  NSURLRequest* next = changed;
  if ([delegate respondsToSelector:@selector(download:willSendRequest:redirectResponse:)]) {
    NSURLResponse* response = [QuorvaneDownloadResponse responseWithURL:[request URL] head:head];
    next = [delegate download:self willSendRequest:changed redirectResponse:response];
  }
  if (delegate != nil && next == nil) {
    [self acceptHead:head];  // the delegate wants this answer itself
  } else if (delegate != nil) {
    [request release];
    request = [next copy];
    [self startTransfer];
  }
}

- (void)acceptHead:(const ResponseHead&)head {
  QuorvaneDownloadResponse* response = [QuorvaneDownloadResponse responseWithURL:[request URL]
                                                                            head:head];
  if ([delegate respondsToSelector:@selector(download:didReceiveResponse:)]) {
    [delegate download:self didReceiveResponse:response];
  }
  if (delegate != nil && destination == nullptr &&
      [delegate respondsToSelector:@selector(download:decideDestinationWithSuggestedFilename:)]) {
    [delegate download:self decideDestinationWithSuggestedFilename:[response suggestedFilename]];
  }
  if (delegate != nil && [self createFile]) {
    transfer->receiveInto(*file);
  }
}

- (BOOL)createFile {
  if (destination == nullptr || !file->create(*destination)) {
    [self failWithCode:NSURLErrorCannotCreateFile
                  text:std::string("The file could not be created: ") + strerror(errno)];
    return NO;
  }
  if ([delegate respondsToSelector:@selector(download:didCreateDestination:)]) {
    [delegate download:self didCreateDestination:textFromUTF8(destination->c_str())];
  }
  return delegate != nil;
}

- (void)deliverData {
  const size_t received = transfer == nullptr ? 0 : transfer->takeReceived();
  if (received > 0 && [delegate respondsToSelector:@selector(download:didReceiveDataOfLength:)]) {
    [delegate download:self didReceiveDataOfLength:received];
  }
}

- (void)deliverEnd {
  if (transfer == nullptr || !transfer->hasEnded()) {
    return;
  }
  if (transfer->result() == CURLE_OK && file->isOpen()) {
    [self complete];
  } else {
    [self failWith:failureOfTransfer(*transfer, [self urlText])];
  }
}

- (void)complete {
  if (!file->complete(overwrites)) {
    [self failWithCode:NSURLErrorCannotMoveFile
                  text:std::string("The file could not be put in place: ") + strerror(errno)];
    return;
  }
  id receiver = [delegate retain];
  [self stop];
  if ([receiver respondsToSelector:@selector(downloadDidFinish:)]) {
    [receiver downloadDidFinish:self];
  }
  [receiver release];
}

- (void)checkIdle:(NSTimer*)timer {
  (void)timer;
  const NSTimeInterval now = steadyNow();
  const unsigned long activity = transfer == nullptr ? 0 : transfer->activity();
  if (activity != idleActivity) {
    idleActivity = activity;
    idleSince = now;
  } else if (now - idleSince >= [request timeoutInterval]) {
    [self failWithCode:NSURLErrorTimedOut text:"The server has not answered in time"];
  }
}

// Ends whatever is in progress; the delegate is no longer called. The caller keeps this object
// alive.
- (void)stop {
  if (delegate == nil && loop == nil) {
    return;
  }
  [NSObject cancelPreviousPerformRequestsWithTarget:self];
  [idleTimer invalidate];
  idleTimer = nil;
  delete transfer;
  transfer = nullptr;
  delete file;
  file = nullptr;
  [loop close];
  [loop release];
  loop = nil;
  [delegate release];
  delegate = nil;
  [self release];
}

- (void)failWith:(NSError*)error {
  [self retain];
  id receiver = [delegate retain];
  [self stop];
  if ([receiver respondsToSelector:@selector(download:didFailWithError:)]) {
    [receiver download:self didFailWithError:error];
  }
  [receiver release];
  [self release];
}

- (void)failWithCode:(NSInteger)code text:(const std::string&)text {
  [self failWith:downloadFailure(code, text, [self urlText])];
}

@end
