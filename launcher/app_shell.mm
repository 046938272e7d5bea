#include "launcher/app_shell.h"

#import <AppKit/AppKit.h>

#include "launcher/default_menu.h"

static NSString* applicationName() {
  NSString* name = [[[NSBundle mainBundle] infoDictionary] objectForKey:@"CFBundleName"];
  return name != nil ? name : [[NSProcessInfo processInfo] processName];
}

// Returns whether the platform has the stock menu file and it could be loaded.
static bool loadStockMenu() {
  NSBundle* bundle = [NSBundle bundleWithPath:@"/System/Library/Frameworks/JavaVM.framework"];
  NSString* path = [bundle pathForResource:@"DefaultApp" ofType:@"nib"];
  if (path == nil) {
    return false;
  }
  NSDictionary* names = [NSDictionary dictionaryWithObject:NSApp forKey:@"NSOwner"];
  return [NSBundle loadNibFile:path externalNameTable:names withZone:NULL];
}

// The titles come from the platform's menu file or from default_menu.mm, never from outside.
#pragma GCC diagnostic ignored "-Wformat-nonliteral"

// A title is a format of its own: where it holds "%@", the name goes.
static void putNameIntoTitles(NSMenu* menu, NSString* name) {
  for (NSInteger i = 0; i < [menu numberOfItems]; ++i) {
    NSMenuItem* item = static_cast<NSMenuItem*>([menu itemAtIndex:i]);
    if (![item isSeparatorItem]) {
      [item setTitle:[NSString stringWithFormat:[item title], name]];
    }
  }
}

void loadOSXUINib(const char*) {
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  NSString* name = applicationName();
  if (!loadStockMenu()) {
    installDefaultMenu();
  }
  NSMenu* mainMenu = [NSApp mainMenu];
  if ([mainMenu numberOfItems] > 0) {
    putNameIntoTitles([[mainMenu itemAtIndex:0] submenu], name);
  }
  [pool release];
}
