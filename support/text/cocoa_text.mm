#import "support/text/cocoa_text.h"

NSString* textFromUTF8(const char* text) {
  NSString* read = [NSString stringWithUTF8String:text];
  return read != nil ? read : [NSString stringWithCString:text encoding:NSISOLatin1StringEncoding];
}
