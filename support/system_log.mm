#include "support/system_log.h"

#import <Foundation/Foundation.h>

void writeSystemLog(const char* text) {
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  NSString* message = [NSString stringWithUTF8String:text];
  if (message == nil) {
    message = [NSString stringWithCString:text encoding:NSISOLatin1StringEncoding];
  }
  NSLog(@"%@", message);
  [pool release];
}
