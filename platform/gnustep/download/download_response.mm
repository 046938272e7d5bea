#import "platform/gnustep/download/download_response.h"

#include <strings.h>

#import "support/text/cocoa_text.h"

// GNUstep's own length parsing is unusable: it takes longer ones for errors.
static NSDictionary* fieldsWithoutLength(const HeaderFields& fields) {
  NSMutableDictionary* dictionary = [NSMutableDictionary dictionary];
  for (const auto& [name, value] : fields) {
    if (strcasecmp(name.c_str(), "Content-Length") != 0) {
      [dictionary setObject:textFromUTF8(value.c_str()) forKey:textFromUTF8(name.c_str())];
    }
  }
  return dictionary;
}

@implementation QuorvaneDownloadResponse

+ (QuorvaneDownloadResponse*)responseWithURL:(NSURL*)url head:(const ResponseHead&)head {
  QuorvaneDownloadResponse* response =
      [[QuorvaneDownloadResponse alloc] initWithURL:url
                                         statusCode:head.status
                                        HTTPVersion:@"HTTP/1.1"
                                       headerFields:fieldsWithoutLength(head.fields)];
  response->expectedLength = head.length;
  return [response autorelease];
}

- (long long)expectedContentLength {
  return expectedLength;
}

@end
