#include "platform/gnustep/main_bundle.h"

#import <Foundation/Foundation.h>
#include <objc/runtime.h>

typedef NSDictionary* (*InfoDictionary)(id, SEL);

static InfoDictionary toolkitInfoDictionary = NULL;
static NSDictionary* mainInfoDictionary = nil;

static NSDictionary* infoDictionary(id bundle, SEL selector) {
  if (bundle == [NSBundle mainBundle]) {
    return mainInfoDictionary;
  }
  return toolkitInfoDictionary(bundle, selector);
}

// The bundle's Info.plist, or nil if the executable is not in a Contents/MacOS folder.
static NSString* infoFileOfMainBundle() {
  NSString* folder = [[[NSBundle mainBundle] executablePath] stringByDeletingLastPathComponent];
  NSString* contents = [folder stringByDeletingLastPathComponent];
  if (![[folder lastPathComponent] isEqual:@"MacOS"] ||
      ![[contents lastPathComponent] isEqual:@"Contents"]) {
    return nil;
  }
  return [contents stringByAppendingPathComponent:@"Info.plist"];
}

void readMainBundleFromContents() {
  NSString* file = infoFileOfMainBundle();
  if (file == nil || ![[NSFileManager defaultManager] isReadableFileAtPath:file]) {
    return;
  }
  mainInfoDictionary = [[NSDictionary alloc] initWithContentsOfFile:file];
  if (mainInfoDictionary == nil) {
    return;
  }
  Method method = class_getInstanceMethod([NSBundle class], @selector(infoDictionary));
  toolkitInfoDictionary = (InfoDictionary)method_getImplementation(method);
  method_setImplementation(method, (IMP)infoDictionary);
}
