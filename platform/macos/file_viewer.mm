#include "platform/file_viewer.h"

#import <AppKit/AppKit.h>

void showInFileViewer(const char* path) {
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  NSFileManager* files = [NSFileManager defaultManager];
  NSString* file = [files stringWithFileSystemRepresentation:path length:strlen(path)];
  // With an empty root the file is selected in the Finder's own window.
  [[NSWorkspace sharedWorkspace] selectFile:file inFileViewerRootedAtPath:@""];
  [pool release];
}
