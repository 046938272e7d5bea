#include "launcher/shell/appearance.h"

#include <cstring>

#import <AppKit/AppKit.h>

#import "support/text/cocoa_text.h"

static NSString* const kLight = @"NSAppearanceNameAqua";
static NSString* const kBundlesChoice = @"NSRequiresAquaSystemAppearance";

// The class and the application's setter are newer than the oldest system that this runs on.
static id appearanceNamed(NSString* name) {
  Class appearances = NSClassFromString(@"NSAppearance");
  return [appearances performSelector:@selector(appearanceNamed:) withObject:name];
}

static id chosenAppearance(const char* name) {
  NSString* text = name == NULL ? nil : textFromUTF8(name);
  id chosen = text == nil ? nil : appearanceNamed(text);
  return chosen != nil ? chosen : appearanceNamed(kLight);
}

static bool isLeftToBundle() {
  return [[[NSBundle mainBundle] infoDictionary] objectForKey:kBundlesChoice] != nil;
}

void setApplicationAppearance(const char* name) {
  const bool isSystems = name != NULL && strcmp(name, "system") == 0;
  if (isSystems || (name == NULL && isLeftToBundle()) ||
      ![NSApp respondsToSelector:@selector(setAppearance:)]) {
    return;
  }
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  [NSApp performSelector:@selector(setAppearance:) withObject:chosenAppearance(name)];
  [pool release];
}
