#include "tests/unit/launch/open_url.h"

#import <Foundation/Foundation.h>

#include "launcher/shell/url_events.h"
#include "launcher/shell/url_handler.h"

void openUrl(const char* url) {
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  registerOSXEventListener();
  NSAppleEventDescriptor* event = [NSAppleEventDescriptor appleEventWithEventClass:0x4755524C
                                                                           eventID:0x4755524C
                                                                  targetDescriptor:nil
                                                                          returnID:-1
                                                                     transactionID:0];
  NSString* text = [NSString stringWithUTF8String:url];
  [event setParamDescriptor:[NSAppleEventDescriptor descriptorWithString:text]
                 forKeyword:0x2D2D2D2D];
  [urlHandler handleURLEvent:event withReplyEvent:nil];
  [pool release];
}
