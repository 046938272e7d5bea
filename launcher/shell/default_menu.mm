#include "launcher/shell/default_menu.h"

#import <AppKit/AppKit.h>

static NSMenuItem* addItem(NSMenu* menu, NSString* title, SEL action, NSString* key) {
  return static_cast<NSMenuItem*>([menu addItemWithTitle:title action:action keyEquivalent:key]);
}

static NSMenu* newApplicationMenu() {
  NSMenu* menu = [[NSMenu alloc] initWithTitle:@"Application"];
  addItem(menu, @"About %@", @selector(orderFrontStandardAboutPanel:), @"");
  [menu addItem:[NSMenuItem separatorItem]];
  addItem(menu, @"Hide %@", @selector(hide:), @"h");
  addItem(menu, @"Hide Others", @selector(hideOtherApplications:), @"");
  addItem(menu, @"Show All", @selector(unhideAllApplications:), @"");
  [menu addItem:[NSMenuItem separatorItem]];
  addItem(menu, @"Quit %@", @selector(terminate:), @"q");
  return menu;
}

void installDefaultMenu() {
  NSString* title = [[NSProcessInfo processInfo] processName];
  NSMenu* mainMenu = [[NSMenu alloc] initWithTitle:title];
  NSMenu* applicationMenu = newApplicationMenu();
  [mainMenu setSubmenu:applicationMenu forItem:addItem(mainMenu, @"Application", NULL, @"")];
  [NSApp setMainMenu:mainMenu];
  [applicationMenu release];
  [mainMenu release];
}
