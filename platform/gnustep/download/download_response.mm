#import "platform/gnustep/download/download_response.h"

#include <strings.h>

// The text of a header field, which may hold any bytes.
static NSString* fieldText(const std::string& bytes) {
  NSString* text = [NSString stringWithUTF8String:bytes.c_str()];
  return text != nil
             ? text
             : [NSString stringWithCString:bytes.c_str() encoding:NSISOLatin1StringEncoding];
}

// GNUstep's own reading of the length is of no use, and takes longer ones for errors.
static NSDictionary* fieldsWithoutLength(const HeaderFields& fields) {
  NSMutableDictionary* dictionary = [NSMutableDictionary dictionary];
  for (const auto& [name, value] : fields) {
    if (strcasecmp(name.c_str(), "Content-Length") != 0) {
      [dictionary setObject:fieldText(value) forKey:fieldText(name)];
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
