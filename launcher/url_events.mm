#include "launcher/url_events.h"

#include <cstring>

#import <Foundation/Foundation.h>

#include "launcher/url_handler.h"

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
  NSString* url = [[event paramDescriptorForKeyword:kDirectObject] stringValue];
  NSLog(@"[Quorvane] [URL] Request received to open URL %@\n", url);
  const char* text = [url UTF8String];
  if (text == NULL) {
    return;  // no URL in the event, or none that UTF-8 can hold: the one before it stands
  }
  const char* copy = strdup(text);
  __atomic_store_n(&requestedURL, copy, __ATOMIC_RELEASE);
  NSLog(@"[Quorvane] [URL] Converted URL to '%s'\n", copy);
}

@end

void registerOSXEventListener() {
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  urlHandler = [[URLHandler alloc] init];
  NSLog(@"[Wrapper] Registering shared apple event manager handler\n");
  [[NSAppleEventManager sharedAppleEventManager] setEventHandler:urlHandler
                                                     andSelector:@selector(handleURLEvent:
                                                                           withReplyEvent:)
                                                   forEventClass:kOpenURLClass
                                                      andEventID:kOpenURL];
  [pool release];
}

const char* getRequestedURL() {
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  const char* url = [urlHandler getRequestedURL];
  if (url != NULL) {
    NSLog(@"[Quorvane] [URL] Latest request is '%s'\n", url);
  } else {
    NSLog(@"[Quorvane] [URL] Latest request is NULL\n");
  }
  [pool release];
  return url;
}
