#include "launcher/shell/url_events.h"

#include <cstring>

#import <Foundation/Foundation.h>

#include "launcher/shell/url_handler.h"
#import "support/text/cocoa_text.h"

URLHandler* urlHandler = nil;

// Four-character codes: 'GURL' and '----'.
static const AEEventClass kOpenURLClass = 0x4755524C;
static const AEEventID kOpenURL = 0x4755524C;
static const AEKeyword kDirectObject = 0x2D2D2D2D;

@implementation URLHandler

- (id)init {
  self = [super init];
  if (self != nil) {
    requestedURL = NULL;
  }
  return self;
}

- (const char*)getRequestedURL {
  return __atomic_load_n(&requestedURL, __ATOMIC_ACQUIRE);
}

- (void)handleURLEvent:(NSAppleEventDescriptor*)event
        withReplyEvent:(NSAppleEventDescriptor*)replyEvent {
  (void)replyEvent;
  [self takeURL:[[event paramDescriptorForKeyword:kDirectObject] stringValue]];
}

- (void)takeURL:(NSString*)url {
  NSLog(@"[Quorvane] [URL] Request received to open URL %@\n", url);
  const char* text = [url UTF8String];
  if (text == NULL) {
    return;  // no URL, or not convertible to UTF-8: the previous one stays
  }
  const char* copy = strdup(text);
  __atomic_store_n(&requestedURL, copy, __ATOMIC_RELEASE);
  NSLog(@"[Quorvane] [URL] Converted URL to '%@'\n", textFromUTF8(copy));
}

@end

void registerOSXEventListener() {
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  if (urlHandler == nil) {
    urlHandler = [[URLHandler alloc] init];
    NSLog(@"[Wrapper] Registering shared apple event manager handler\n");
  }
  [[NSAppleEventManager sharedAppleEventManager] setEventHandler:urlHandler
                                                     andSelector:@selector(handleURLEvent:
                                                                           withReplyEvent:)
                                                   forEventClass:kOpenURLClass
                                                      andEventID:kOpenURL];
  [pool release];
}

void requestURL(NSString* url) { [urlHandler takeURL:url]; }

const char* getRequestedURL() {
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  const char* url = [urlHandler getRequestedURL];
  if (url != NULL) {
    NSLog(@"[Quorvane] [URL] Latest request is '%@'\n", textFromUTF8(url));
  } else {
    NSLog(@"[Quorvane] [URL] Latest request is NULL\n");
  }
  [pool release];
  return url;
}
