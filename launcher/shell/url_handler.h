#ifndef QUORVANE_LAUNCHER_SHELL_URL_HANDLER_H
#define QUORVANE_LAUNCHER_SHELL_URL_HANDLER_H

#import <Foundation/Foundation.h>

// Receives open-URL Apple events on the main thread and keeps the latest URL. Included by
// Objective-C++ files only; others use url_events.h.
@interface URLHandler : NSObject {
  // The latest URL, UTF-8; null until the first event. Replaced by a single store of a complete
  // copy. A replaced copy is never freed, because another thread may still read it.
  const char* requestedURL;
}
- (id)init;
- (const char*)getRequestedURL;
- (void)handleURLEvent:(NSAppleEventDescriptor*)event
        withReplyEvent:(NSAppleEventDescriptor*)replyEvent;
// Makes `url` the latest URL, unless it is nil or cannot be converted to UTF-8. Writes to the
// system log.
- (void)takeURL:(NSString*)url;
@end

// The process's handler; null until registerOSXEventListener() has run.
extern URLHandler* urlHandler;

// Makes `url` the requested URL, like an event that asks to open it. Does nothing before
// registerOSXEventListener(). Main thread.
void requestURL(NSString* url);

#endif
