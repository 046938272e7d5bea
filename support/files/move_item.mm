#include "support/files/move_item.h"

#import <Foundation/Foundation.h>

bool moveItem(const char* from, const char* to) {
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  NSFileManager* files = [NSFileManager defaultManager];
  NSError* error = nil;
  const BOOL moved =
      [files moveItemAtPath:[files stringWithFileSystemRepresentation:from length:strlen(from)]
                     toPath:[files stringWithFileSystemRepresentation:to length:strlen(to)]
                      error:&error];
  if (!moved) {
    NSLog(@"[Rename] Unable to move item: %@", [error localizedDescription]);
  }
  [pool release];
  return moved;
}
