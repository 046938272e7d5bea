#include "support/log/system_log.h"

#import "support/text/cocoa_text.h"

void writeSystemLog(const char* text) {
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  NSLog(@"%@", textFromUTF8(text));
  [pool release];
}
