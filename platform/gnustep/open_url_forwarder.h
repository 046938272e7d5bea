#ifndef QUORVANE_PLATFORM_GNUSTEP_OPEN_URL_FORWARDER_H
#define QUORVANE_PLATFORM_GNUSTEP_OPEN_URL_FORWARDER_H

#import <AppKit/AppKit.h>

// The application's delegate. Other programs ask a running application to open a URL through
// distributed objects, with this method of its delegate; it turns the request into the Apple event
// that a handler is registered for.
@interface OpenURLForwarder : NSObject
// `url` is an NSURL or a text. Returns whether a handler took it.
- (BOOL)application:(NSApplication*)application openURL:(id)url;
@end

#endif
