#include "launcher/shell/app_shell.h"

#include <cstring>
#include <vector>

#import <AppKit/AppKit.h>

#include "launcher/shell/appearance.h"
#include "launcher/shell/default_menu.h"
#import "support/text/cocoa_text.h"

static Presentation presented = {NULL, NULL, NULL};

static NSString* presentedName() {
  return presented.name == NULL ? nil : textFromUTF8(presented.name);
}

// The file manager knows how the file system writes names.
static NSString* iconPath() {
  const char* path = presented.icon;
  return path == NULL
             ? nil
             : [[NSFileManager defaultManager] stringWithFileSystemRepresentation:path
                                                                           length:strlen(path)];
}

void presentApplication(const Presentation& presentation) {
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  presented = presentation;
  NSString* name = presentedName();
  if ([name length] > 0) {
    [[NSProcessInfo processInfo] setProcessName:name];
  }
  [pool release];
}

static NSString* applicationName() {
  NSString* given = presentedName();
  if ([given length] > 0) {
    return given;
  }
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

// Each title is a format: "%@" is replaced by the name. The formats are kept, because the name may
// change; and forever, because another thread may end the process.
static void putNameIntoTitles(NSMenu* menu, NSString* name) {
  static auto& formats = *new std::vector<NSString*>;
  for (NSInteger i = 0; i < [menu numberOfItems]; ++i) {
    NSMenuItem* item = [menu itemAtIndex:i];
    if (static_cast<size_t>(i) == formats.size()) {
      formats.push_back([[item title] retain]);
    }
    if (![item isSeparatorItem]) {
      [item setTitle:[NSString stringWithFormat:formats[static_cast<size_t>(i)], name]];
    }
  }
}

// The menu is created once: a replacement would not be handled while it is open. If its window
// shows the process's name, it takes the name when it becomes the main menu.
static void loadMenu() {
  static NSMenu* menu = nil;
  if (menu != nil) {
    [NSApp setMainMenu:nil];
    [NSApp setMainMenu:menu];
    return;
  }
  if (!loadStockMenu()) {
    installDefaultMenu();
  }
  menu = [[NSApp mainMenu] retain];
}

static void setIcon() {
  NSString* path = iconPath();
  NSImage* icon = path == nil ? nil : [[NSImage alloc] initWithContentsOfFile:path];
  if (icon != nil) {
    [NSApp setApplicationIconImage:icon];
  }
  [icon release];
}

void loadOSXUINib(const char*) {
  if (NSApp == nil) {
    return;
  }
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  NSString* name = applicationName();
  loadMenu();
  NSMenu* mainMenu = [NSApp mainMenu];
  if ([mainMenu numberOfItems] > 0) {
    putNameIntoTitles([[mainMenu itemAtIndex:0] submenu], name);
  }
  setIcon();
  setApplicationAppearance(presented.appearance);
  [pool release];
}
