// How the log is shown on macOS, from that platform's own source, with a recorder in the place of
// the workspace's method.

#import <AppKit/AppKit.h>
#import <objc/runtime.h>

#include <gtest/gtest.h>

#include <string>

#define showInFileViewer showInFinder
#include "platform/macos/file_viewer.mm"
#undef showInFileViewer

static std::string selectedFile;
static std::string rootFolder = "none";

static BOOL recordSelection(id self, SEL selector, NSString* file, NSString* root) {
  (void)self;
  (void)selector;
  selectedFile = [file UTF8String];
  rootFolder = [root UTF8String];
  return YES;
}

TEST(MacFileViewer, SelectsTheFileInTheFindersOwnWindow) {
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  Method method = class_getInstanceMethod(objc_getClass("NSWorkspace"),
                                          @selector(selectFile:inFileViewerRootedAtPath:));
  void* recorder = reinterpret_cast<void*>(recordSelection);
  method_setImplementation(method, reinterpret_cast<IMP>(recorder));
  showInFinder("/Users/Größe/logs/Launcher.log");
  EXPECT_EQ("/Users/Größe/logs/Launcher.log", selectedFile);
  EXPECT_EQ("", rootFolder);
  [pool release];
}
